#include "Interface/Common/Dialogs.h"
#include "Interface/PlatformWords.h"
#include "Interface/Settings/Pages.h"

namespace murmel {

namespace {

constexpr qint64 maximumSettings = 1 << 16;  // bytes

}  // namespace

AdvancedPage::AdvancedPage(const SettingsServices& services)
    : SettingsPage(tr("Advanced"), {}, services), outcome_(new NoticeBar(Severity::information)) {
  auto& card = *addCard(tr("Recognition"));
  addSwitch(card,
            {tr("Work ahead while I speak"),
             tr("Recognizes what you have said during a long dictation, so that the words come sooner after "
                "it. Nothing is inserted by this. From the next dictation.")},
            {.property = SettingsProperty::processWhileRecording,
             .get = [this] { return settings().processWhileRecording(); },
             .set = [this](bool on) { settings().setProcessWhileRecording(on); },
             .standard = true});
  addChoice<std::int64_t>(
      card,
      {tr("Keep the speech model in memory"), tr("After the last dictation. It is loaded again while you "
                                                 "speak the next one.")},
      {.property = SettingsProperty::recogniserIdleMinutes,
       .get = [this] { return settings().recogniserIdleMinutes(); },
       .set = [this](std::int64_t minutes) { settings().setRecogniserIdleMinutes(minutes); },
       .standard = 10},
      {{1, tr("1 minute")}, {10, tr("10 minutes")}, {60, tr("1 hour")}, {0, tr("Always")}});

  auto& updates = *addCard(tr("Updates"));
  auto* automatic =
      addSwitch(updates,
                {tr("Check for updates automatically"),
                 tr("At most once a day. Nothing is downloaded or installed without your word.")},
                {.property = SettingsProperty::automaticUpdateChecks,
                 .get = [this] { return settings().automaticUpdateChecks(); },
                 .set = [this](bool on) { settings().setAutomaticUpdateChecks(on); },
                 .standard = false});
  automatic->setUnavailable(inPlatformWords(this->services().updatesUnavailable));
  if (this->services().makeUpdatePanel) updates.addWidget(this->services().makeUpdatePanel());

  auto& files = *addCard(tr("Settings file"));
  auto* exportRow = files.addRow(tr("Export settings"), tr("As JSON, without vocabulary, history and keys."),
                                 button(tr("Export…"), [this] { exportSettings(); }));
  auto* importRow =
      files.addRow(tr("Import settings"), tr("Settings that the file does not name stay as they are."),
                   button(tr("Import…"), [this] { importSettings(); }));
  if (!this->services().exportSettings) exportRow->hide();
  if (!this->services().importSettings) importRow->hide();
  addWidget(outcome_);
  outcome_->setDismissal([this] { outcome_->setText({}); });
}

void AdvancedPage::exportSettings() {
  saveTextFile(
      window(), tr("Export Settings"), QStringLiteral("murmel-settings.json"),
      QString::fromStdString(services().exportSettings()),
      [this](const QString& path) { outcome_->setText(tr("The settings are in %1.").arg(path)); },
      [this](const QString& problem) { outcome_->setText(problem); });
}

void AdvancedPage::importSettings() {
  const auto take = [this](const QString& text) {
    const auto taken = services().importSettings(text.toStdString());
    outcome_->setText(taken ? tr("The settings of the file are in effect.") : inPlatformWords(taken.error()));
  };
  openTextFile(window(), tr("Import Settings"), tr("Settings (*.json);;All files (*)"), maximumSettings, take,
               [this](const QString& problem) { outcome_->setText(problem); });
}

}  // namespace murmel
