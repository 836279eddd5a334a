#include "Interface/FirstRun/Steps.h"
#include "Interface/PlatformWords.h"
#include "Interface/Settings/LevelBar.h"

#include <QVBoxLayout>
#include <algorithm>

namespace murmel {

MicrophoneStep::MicrophoneStep(const FirstRunServices& services)
    : FormPage(tr("Microphone"), tr("Say a sentence as you would dictate it, and watch the level.")),
      services_(services),
      choice_(new ChoiceBox),
      meter_(new LevelBar),
      verdict_(label({})) {
  auto& card = *addCard();
  auto* row = card.addRow(tr("Microphone in use"),
                          tr("Choosing another one changes it for the whole desktop."), choice_);
  if (services_.microphones == nullptr) row->setUnavailable(tr("This session has no list of microphones."));
  QObject::connect(choice_, &QComboBox::activated, this, [this](int index) {
    const auto position = static_cast<std::size_t>(index);
    if (position >= sources_.size()) return;
    services_.microphones->choose(sources_[position].name, [this](bool /*done*/) {
      list();
      if (isVisible()) listen();
    });
  });
  auto* trial = new QWidget;
  auto* column = new QVBoxLayout(trial);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(grid::small);
  column->addWidget(meter_);
  column->addWidget(verdict_);
  card.addRow(tr("Speak now"), tr("Nothing of it is kept."), trial, FormRow::Place::below);
  if (services_.openSoundSettings) {
    card.addRow(tr("Volume and devices"), tr("In the sound settings of the desktop."),
                button(tr("Sound Settings…"), services_.openSoundSettings));
  }
  addWidget(new CheckList(services.checks, {"microphone"}));
}

void MicrophoneStep::showEvent(QShowEvent* event) {
  FormPage::showEvent(event);
  list();
  listen();
}

void MicrophoneStep::hideEvent(QHideEvent* event) {
  trial_.reset();
  meter_->clear();
  FormPage::hideEvent(event);
}

void MicrophoneStep::list() {
  if (services_.microphones == nullptr) return;
  const auto alive = QPointer<MicrophoneStep>(this);
  services_.microphones->list([alive](const auto& sources) {
    if (alive) alive->fill(sources);
  });
}

void MicrophoneStep::fill(const std::vector<MicrophoneSource>& sources) {
  sources_ = sources;
  choice_->clear();
  for (const auto& source : sources_) choice_->addItem(QString::fromStdString(source.title));
  const auto used = std::ranges::find(sources_, true, &MicrophoneSource::isDefault);
  choice_->setCurrentIndex(used == sources_.end() ? -1 : static_cast<int>(used - sources_.begin()));
  if (sources_.empty()) choice_->addItem(tr("There is no microphone."));
  choice_->setEnabled(!sources_.empty());
}

void MicrophoneStep::listen() {
  meter_->clear();
  if (services_.microphone == nullptr)
    return verdict_->setText(tr("The microphone cannot be tried in this session."));
  trial_ = services_.microphone->listen([this](double level) { hear(level); },
                                        [this](const std::string& sentence) {
                                          meter_->clear();
                                          verdict_->setText(inPlatformWords(sentence));
                                        });
  hear(0);
}

void MicrophoneStep::hear(double level) {
  meter_->show(level);
  verdict_->setText(microphoneVerdict(meter_->loudest()));
}

}  // namespace murmel
