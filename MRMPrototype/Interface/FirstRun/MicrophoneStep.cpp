#include "Interface/FirstRun/Steps.h"
#include "Interface/PlatformWords.h"
#include "Interface/Settings/LevelBar.h"
#include "Interface/Settings/MicrophoneChoice.h"

#include <QVBoxLayout>

namespace murmel {

MicrophoneStep::MicrophoneStep(const FirstRunServices& services)
    : FormPage(tr("Microphone"), tr("Say a sentence as you would dictate it, and watch the level.")),
      services_(services),
      choice_(new MicrophoneChoice(services_.microphones, [this] { listen(); })),
      meter_(new LevelBar),
      verdict_(label({})) {
  auto& card = *addCard();
  auto* row = card.addRow(tr("Microphone in use"),
                          tr("Choosing another one changes it for the whole desktop."), choice_);
  if (services_.microphones == nullptr) row->setUnavailable(tr("This session has no list of microphones."));
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
  choice_->refresh();
  listen();
}

void MicrophoneStep::hideEvent(QHideEvent* event) {
  trial_.reset();
  meter_->clear();
  FormPage::hideEvent(event);
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
