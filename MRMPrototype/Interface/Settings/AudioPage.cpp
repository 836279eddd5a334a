#include "Interface/PlatformWords.h"
#include "Interface/Settings/LevelBar.h"
#include "Interface/Settings/Pages.h"

#include <QVBoxLayout>

namespace murmel {

AudioPage::AudioPage(const SettingsServices& services)
    : SettingsPage(tr("Audio"),
                   tr("Murmel records from the microphone that the desktop uses, into memory only."),
                   services),
      meter_(new LevelBar),
      verdict_(label({}, LabelRole::second)),
      test_(button(tr("Test Microphone"), [this] { toggleTrial(); })) {
  auto& card = *addCard(tr("Microphone"));
  auto* const openSound = this->services().openSoundSettings
                              ? button(tr("Sound Settings…"), this->services().openSoundSettings)
                              : nullptr;
  microphone_ = card.addRow(tr("Microphone in use"), {}, openSound);
  auto* trial = new QWidget;
  auto* line = new QVBoxLayout(trial);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(grid::small);
  line->addWidget(meter_);
  line->addWidget(verdict_);
  line->addWidget(buttonRow({test_}));
  verdict_->hide();
  auto* row = card.addRow(tr("Level"), tr("Start the test and say a sentence. Nothing of it is kept."), trial,
                          FormRow::Place::below);
  row->setKeywords(tr("input volume gain meter"));
  if (this->services().microphone == nullptr)
    row->setUnavailable(tr("The microphone cannot be tried in this session."));

  auto& sounds = *addCard(tr("Sounds"));
  addSwitch(sounds,
            {tr("Play sounds"), tr("A short sound when recording starts, and another when it stops.")},
            {.property = SettingsProperty::playFeedbackSound,
             .get = [this] { return settings().playFeedbackSound(); },
             .set = [this](bool on) { settings().setPlayFeedbackSound(on); },
             .standard = true});
}

void AudioPage::showEvent(QShowEvent* event) {
  SettingsPage::showEvent(event);
  if (services().microphone == nullptr) return;
  const auto name = services().microphone->microphoneName();
  microphone_->setDescription(name.empty() ? tr("There is no microphone.") : inPlatformWords(name));
}

void AudioPage::hideEvent(QHideEvent* event) {
  endTrial();
  SettingsPage::hideEvent(event);
}

void AudioPage::toggleTrial() {
  if (trial_) return endTrial();
  trial_ = services().microphone->listen([this](double level) { hear(level); },
                                         [this](const std::string& sentence) {
                                           endTrial();
                                           say(inPlatformWords(sentence));
                                         });
  test_->setText(tr("Stop Test"));
  hear(0);
}

void AudioPage::endTrial() {
  trial_ = {};
  test_->setText(tr("Test Microphone"));
  meter_->clear();
  say({});
}

void AudioPage::hear(double level) {
  meter_->show(level);
  say(microphoneVerdict(meter_->loudest()));
}

void AudioPage::say(const QString& words) {
  verdict_->setText(words);
  verdict_->setVisible(!words.isEmpty());
}

}  // namespace murmel
