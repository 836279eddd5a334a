#include "Interface/PlatformWords.h"
#include "Interface/Settings/LevelBar.h"
#include "Interface/Settings/MicrophoneChoice.h"
#include "Interface/Settings/Pages.h"

#include <QVBoxLayout>

namespace murmel {

AudioPage::AudioPage(const SettingsServices& services)
    : SettingsPage(tr("Audio"),
                   tr("Murmel records from the microphone that the desktop uses, into memory only."),
                   services),
      choice_(new MicrophoneChoice(services.microphones,
                                   [this] {
                                     if (trial_) listen();
                                   })),
      meter_(new LevelBar),
      verdict_(label({}, LabelRole::second)),
      test_(button(tr("Test Microphone"), [this] { toggleTrial(); })) {
  auto& card = *addCard(tr("Microphone"));
  auto* row = card.addRow(tr("Microphone in use"),
                          tr("Choosing another one changes it for the whole desktop."), choice_);
  if (this->services().microphones == nullptr)
    row->setUnavailable(tr("This session has no list of microphones."));
  auto* trial = new QWidget;
  auto* line = new QVBoxLayout(trial);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(grid::small);
  line->addWidget(meter_);
  line->addWidget(verdict_);
  line->addWidget(buttonRow({test_}));
  verdict_->hide();
  row = card.addRow(tr("Level"), tr("Start the test and say a sentence. Nothing of it is kept."), trial,
                    FormRow::Place::below);
  row->setKeywords(tr("input volume gain meter"));
  if (this->services().microphone == nullptr)
    row->setUnavailable(tr("The microphone cannot be tried in this session."));
  if (this->services().openSoundSettings) {
    card.addRow(tr("Volume and devices"), tr("In the sound settings of the desktop."),
                button(tr("Sound Settings…"), this->services().openSoundSettings));
  }

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
  choice_->refresh();
}

void AudioPage::hideEvent(QHideEvent* event) {
  endTrial();
  SettingsPage::hideEvent(event);
}

void AudioPage::toggleTrial() {
  if (trial_) return endTrial();
  test_->setText(tr("Stop Test"));
  listen();
}

void AudioPage::listen() {
  meter_->clear();
  trial_ = services().microphone->listen([this](double level) { hear(level); },
                                         [this](const std::string& sentence) {
                                           endTrial();
                                           say(inPlatformWords(sentence));
                                         });
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
