#include "Interface/PlatformWords.h"
#include "Interface/Settings/Pages.h"
#include "Shortcut/ShortcutChoice.h"
#include "Shortcut/ShortcutHelp.h"

#include <algorithm>

namespace murmel {

namespace {

constexpr auto choices = allCases<ShortcutChoice>();

}  // namespace

ShortcutPage::ShortcutPage(const SettingsServices& services)
    : SettingsPage(tr("Shortcut"),
                   tr("The keys that start and stop a dictation, whatever application is in front."),
                   services),
      choice_(new ChoiceBox),
      notice_(new NoticeBar(Severity::warning)) {
  addWidget(notice_);
  auto& card = *addCard();
  for (const auto choice : choices) choice_->addItem(shortcutTitle(configuration(choice)));
  row_ = card.addRow(tr("Dictation shortcut"), {}, choice_);
  row_->setKeywords(tr("keys hotkey hold tap"));
  QObject::connect(choice_, &QComboBox::activated, choice_, [this](int index) {
    const auto position = static_cast<std::size_t>(index);
    if (position < choices.size()) settings().setShortcut(configuration(choices.at(position)));
  });
  auto* record = button(tr("Record a Shortcut…"), [this] { this->services().recordShortcut(window()); });
  auto* row = card.addRow(tr("Another shortcut"), tr("Press the keys you want to use."), record);
  if (!this->services().recordShortcut) row->setUnavailable(tr("Keys cannot be recorded in this session."));
  if (this->services().openSetup) {
    card.addRow(tr("Setup and permissions"), inPlatformWords(inputMonitoringExplanation),
                button(tr("Check…"), this->services().openSetup));
  }
  follow(SettingsProperty::shortcut, [this] { show(); });
  onReset([this] { settings().setShortcut(configuration(ShortcutChoice::functionKey)); });
}

void ShortcutPage::show() {
  const auto shortcut = settings().shortcut();
  while (choice_->count() > static_cast<int>(choices.size())) choice_->removeItem(choice_->count() - 1);
  const auto* const found = std::ranges::find(choices, shortcut, &configuration);
  // One that was recorded stands below the ready-made ones.
  if (found == choices.end()) choice_->addItem(shortcutTitle(shortcut));
  choice_->setCurrentIndex(static_cast<int>(found - choices.begin()));
  row_->setDescription(inPlatformWords(modeHelpText(shortcut.kind)));
  if (services().shortcutNotice) notice_->setText(inPlatformWords(services().shortcutNotice(shortcut)));
}

}  // namespace murmel
