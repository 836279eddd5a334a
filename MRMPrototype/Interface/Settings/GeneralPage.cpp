#include "Interface/PlatformWords.h"
#include "Interface/Settings/Pages.h"

#include <QSignalBlocker>

namespace murmel {

GeneralPage::GeneralPage(const SettingsServices& services)
    : SettingsPage(tr("General"),
                   tr("Changes take effect at once. What is fixed while you speak takes effect with the next "
                      "dictation, and says so."),
                   services) {
  addStart();
  addDictation();
  addIndicator();
}

void GeneralPage::addStart() {
  auto& card = *addCard(tr("Start"));
  auto* autostart = new Switch;
  auto* row =
      card.addRow(tr("Start when I log in"),
                  tr("Murmel waits in the tray and uses no processor time until you dictate."), autostart);
  row->setKeywords(tr("autostart login session boot"));
  if (auto* const control = this->services().autostart; control != nullptr) {
    autostart->setChecked(control->isOn());
    QObject::connect(autostart, &Switch::clicked, autostart, [row, autostart, control](bool on) {
      if (const auto set = control->set(on); !set) row->setDescription(inPlatformWords(set.error()));
      autostart->setChecked(control->isOn());
    });
    onReset([autostart] {
      if (autostart->isChecked()) autostart->click();
    });
  } else {
    row->setUnavailable(tr("This session has no folder for programs that start with it."));
  }
  auto* taskBar = addSwitch(
      card,
      {tr("Show in the task bar"), tr("Without this, open windows appear in the tray icon's menu only.")},
      {.property = SettingsProperty::showInDock,
       .get = [this] { return settings().showInDock(); },
       .set = [this](bool on) { settings().setShowInDock(on); },
       .standard = true});
  if (!this->services().canKeepOutOfTaskBar)
    taskBar->setUnavailable(tr("This desktop lists every window: no program can keep out of its bar."));
}

void GeneralPage::addDictation() {
  auto& card = *addCard(tr("While you dictate"));
  addSwitch(card,
            {tr("Insert phrases while I speak"),
             tr("Looks for a phrase pause after at least 3 seconds, then inserts recognized and formatted "
                "phrases—not individual words. A phrase pause is a short silence. From the next dictation.")},
            {.property = SettingsProperty::insertWhileRecording,
             .get = [this] { return settings().insertWhileRecording(); },
             .set = [this](bool on) { settings().setInsertWhileRecording(on); },
             .standard = false})
      ->setKeywords(tr("live insertion phrases"));
  addSwitch(card,
            {tr("Restore the clipboard"),
             tr("Murmel pastes through the clipboard. This puts back what you had copied before. Words that "
                "could not be "
                "pasted stay there for you, marked private; not every clipboard history heeds the mark.")},
            {.property = SettingsProperty::restorePreviousClipboard,
             .get = [this] { return settings().restorePreviousClipboard(); },
             .set = [this](bool on) { settings().setRestorePreviousClipboard(on); },
             .standard = true});
}

void GeneralPage::addIndicator() {
  auto& card = *addCard(tr("Recording indicator"));
  Titles<OverlayPosition> titles;
  for (const auto position : allCases<OverlayPosition>())
    titles.emplace_back(position, settingsTitles::of(position));
  addChoice<OverlayPosition>(
      card, {tr("Position"), tr("The edge of the screen where the indicator floats while Murmel listens.")},
      {.property = SettingsProperty::overlayPosition,
       .get = [this] { return settings().overlayPosition(); },
       .set = [this](OverlayPosition position) { settings().setOverlayPosition(position); },
       .standard = OverlayPosition::right},
      std::move(titles))
      ->setKeywords(tr("overlay pill edge"));
  addSwitch(card,
            {tr("Keep the indicator on the screen"),
             tr("A small button that starts a dictation. Without a shortcut it is always there.")},
            {.property = SettingsProperty::showRestingIndicator,
             .get = [this] { return settings().showRestingIndicator(); },
             .set = [this](bool on) { settings().setShowRestingIndicator(on); },
             .standard = false});
}

}  // namespace murmel
