#include "Interface/FirstRun/Steps.h"
#include "Interface/PlatformWords.h"
#include "Settings/SettingsRepository.h"
#include "Shortcut/ShortcutConflicts.h"
#include "Shortcut/ShortcutHelp.h"

namespace murmel {

ShortcutStep::ShortcutStep(const FirstRunServices& services)
    : FormPage(tr("Shortcut"),
               tr("The keys that start and stop a dictation, whatever application is in front.")),
      services_(services),
      notice_(new NoticeBar(Severity::warning)),
      checks_(new CheckList(services.checks, {"shortcut"})) {
  addWidget(notice_);
  auto& card = *addCard();
  auto* record = button(tr("Record Another…"), [this] {
    services_.recordShortcut(window(),
                             [this](const auto& chosen) { services_.settings.setShortcut(chosen); });
  });
  current_ = card.addRow(QString(), {}, record);
  if (!services_.recordShortcut) current_->setUnavailable(tr("Keys cannot be recorded in this session."));
  auto& proposals = *addCard(tr("Suggestions"));
  const auto propose = [&](const ShortcutConfiguration& shortcut, const QString& why) {
    auto* use = button(tr("Use"), [this, shortcut] { services_.settings.setShortcut(shortcut); });
    use->setAccessibleName(tr("Use %1").arg(shortcutTitle(shortcut)));
    proposals.addRow(shortcutTitle(shortcut), why, use);
    proposals_.emplace_back(shortcut, use);
  };
  const auto [hold, tap] = proposedShortcuts();
  propose(hold, tr("Hold both while you speak. They write nothing and are on every keyboard."));
  propose(tap, tr("Twice to start, twice to stop: nothing has to be held down."));
  addWidget(checks_);
  changes_ = services_.settings.shortcutDidChange().subscribe([this] { show(); });
  show();
}

void ShortcutStep::showEvent(QShowEvent* event) {
  FormPage::showEvent(event);
  // Where the shortcut of now is no good, one key takes the proposal.
  if (notice_->isHidden()) return;
  window()->setAttribute(Qt::WA_KeyboardFocusChange);  // or nobody would see that
  proposals_.front().second->setFocus();
}

void ShortcutStep::show() {
  const auto shortcut = services_.settings.shortcut();
  current_->setTitle(shortcutTitle(shortcut));
  current_->setDescription(inPlatformWords(modeHelpText(shortcut.kind)));
  for (const auto& [proposal, use] : proposals_)
    use->setText(isSameShortcut(proposal, shortcut) ? tr("In Use") : tr("Use"));
  const auto against = services_.shortcutNotice ? services_.shortcutNotice(shortcut) : std::string();
  notice_->setText(inPlatformWords(against));
  checks_->leaveOut(against);
}

}  // namespace murmel
