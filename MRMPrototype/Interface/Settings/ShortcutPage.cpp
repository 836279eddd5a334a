#include "Interface/PlatformWords.h"
#include "Interface/Settings/Pages.h"
#include "Shortcut/ShortcutChoice.h"
#include "Shortcut/ShortcutConflicts.h"
#include "Shortcut/ShortcutHelp.h"

#include <algorithm>

namespace murmel {

namespace {

std::vector<ShortcutConfiguration> readyMade(const SettingsServices& services) {
  std::vector<ShortcutConfiguration> all;
  const auto add = [&all](const ShortcutConfiguration& shortcut) {
    if (std::ranges::find(all, shortcut) == all.end()) all.push_back(shortcut);
  };
  for (const auto& proposal : proposedShortcuts(services.canHearShortcut)) add(proposal);
  for (const auto choice : offeredChoices(services.canHearShortcut)) add(configuration(choice));
  return all;
}

}  // namespace

ShortcutPage::ShortcutPage(const SettingsServices& services)
    : SettingsPage(tr("Shortcut"),
                   tr("The keys that start and stop a dictation, whatever application is in front."),
                   services),
      ready_(readyMade(services)),
      choice_(new ChoiceBox),
      notice_(new NoticeBar(Severity::warning)) {
  addWidget(notice_);
  auto& card = *addCard();
  for (const auto& shortcut : ready_) choice_->addItem(shortcutTitle(shortcut));
  row_ = card.addRow(tr("Dictation shortcut"), {}, choice_);
  row_->setKeywords(tr("keys hotkey hold tap"));
  QObject::connect(choice_, &QComboBox::activated, choice_, [this](int index) {
    const auto position = static_cast<std::size_t>(index);
    if (position < ready_.size()) settings().setShortcut(ready_[position]);
  });
  auto* record = button(tr("Record…"), [this] {
    this->services().recordShortcut(window(), [this](const auto& chosen) { settings().setShortcut(chosen); });
  });
  record->setAccessibleName(tr("Record other keys"));
  auto* row = card.addRow(tr("Keys of your own"),
                          tr("Press the keys that you want to use instead of the shortcut above."), record);
  if (!this->services().recordShortcut) row->setUnavailable(tr("Keys cannot be recorded in this session."));
  if (this->services().openSetup) {
    card.addRow(tr("Setup and permissions"), inPlatformWords(inputMonitoringExplanation),
                button(tr("Check…"), this->services().openSetup));
  }
  auto& further = *addCard(tr("Further shortcuts"));
  addFurther(
      further, tr("Discard the recording"), tr("Esc does that too, while Murmel listens."),
      SettingsProperty::cancelShortcut, [this]() -> auto& { return settings().cancelShortcut(); },
      [this](const auto& shortcut) { settings().setCancelShortcut(shortcut); });
  addFurther(
      further, tr("Paste the last dictation again"), tr("For two minutes after it."),
      SettingsProperty::pasteAgainShortcut, [this]() -> auto& { return settings().pasteAgainShortcut(); },
      [this](const auto& shortcut) { settings().setPasteAgainShortcut(shortcut); });
  follow(SettingsProperty::shortcut, [this] { show(); });
  onReset([this] { settings().setShortcut(ready_.front()); });
}

void ShortcutPage::addFurther(Card& card, const QString& title, const QString& description,
                              SettingsProperty property, std::function<const ShortcutConfiguration&()> get,
                              std::function<void(const ShortcutConfiguration&)> set) {
  auto* keys = label({}, LabelRole::second);
  keys->setWordWrap(false);
  auto* choose = button({}, [this, set] { services().recordShortcut(window(), set); });
  auto* remove = symbolButton(Symbol::remove, tr("Remove this shortcut"), [set] { set({}); });
  auto* row = card.addRow(title, description, buttonRow({keys, choose, remove}));
  if (!services().recordShortcut || !services().hearsFurtherShortcuts)
    row->setUnavailable(tr("This desktop watches no further shortcut for Murmel."));
  follow(property, [title, keys, choose, remove, get] {
    const bool isSet = get().kind != ShortcutConfiguration::Kind::disabled;
    keys->setText(isSet ? shortcutTitle(get()) : tr("None"));
    choose->setText(isSet ? tr("Change…") : tr("Record…"));
    choose->setAccessibleName(title + QStringLiteral(": ") + keys->text() + QStringLiteral(", ") +
                              choose->text());
    remove->setVisible(isSet);
  });
  onReset([set] { set({}); });
}

void ShortcutPage::show() {
  const auto shortcut = settings().shortcut();
  const auto readyCount = static_cast<int>(ready_.size());
  while (choice_->count() > readyCount) choice_->removeItem(choice_->count() - 1);
  const auto found =
      std::ranges::find_if(ready_, [&](const auto& ready) { return isSameShortcut(ready, shortcut); });
  // One that was recorded stands below the ready-made ones.
  if (found == ready_.end()) choice_->addItem(shortcutTitle(shortcut));
  choice_->setCurrentIndex(static_cast<int>(found - ready_.begin()));
  row_->setDescription(shortcutUse(shortcut, services().tellsOfRelease));
  if (services().shortcutNotice) notice_->setText(inPlatformWords(services().shortcutNotice(shortcut)));
}

}  // namespace murmel
