#include "Interface/FirstRun/Steps.h"
#include "Interface/PlatformWords.h"
#include "Platform/KeyModifiers.h"
#include "Settings/SettingsRepository.h"
#include "Shortcut/HotkeyService.h"
#include "Shortcut/ShortcutConflicts.h"

namespace murmel {

ShortcutStep::ShortcutStep(const FirstRunServices& services, std::function<void()> offerChanged)
    : FormPage(tr("Shortcut"),
               tr("The keys that start and stop a dictation, whatever application is in front.")),
      services_(services),
      offerChanged_(std::move(offerChanged)),
      notice_(new NoticeBar(Severity::warning)),
      request_(new NoticeBar(Severity::information)),
      checks_(new CheckList(services.checks, {"shortcut"})) {
  addWidget(notice_);
  addWidget(request_);
  if (auto* trials = services_.shortcutTrials)
    request_->setAction(tr("Nothing Happened"), [trials] { trials->nothingHappened(); });
  auto& card = *addCard();
  auto* record = button(tr("Record Other Keys…"), [this] {
    services_.recordShortcut(window(), [this](const auto& chosen) { take(chosen); });
  });
  current_ = card.addRow(QString(), {}, record);
  if (!services_.recordShortcut) current_->setUnavailable(tr("Keys cannot be recorded in this session."));
  auto& proposals = *addCard(tr("Suggestions"));
  for (const auto& shortcut : proposedShortcuts(services_.canHearShortcut)) {
    auto* use = button(tr("Use"), [this, shortcut] { take(shortcut); });
    use->setAccessibleName(tr("Use %1").arg(shortcutTitle(shortcut)));
    using Kind = ShortcutConfiguration::Kind;
    proposals.addRow(
        shortcutTitle(shortcut),
        shortcut.kind == Kind::modifiersOnly
            ? tr("Hold both while you speak. They write nothing and are on every keyboard.")
        : shortcut.kind == Kind::doubleTapModifier
            ? tr("Twice to start, twice to stop: nothing has to be held down.")
            : tr("Hold the keys while you speak. This desktop hears them, but no modifier key alone."),
        use);
    proposals_.emplace_back(shortcut, use);
  }
  addWidget(checks_);
  changes_ = services_.settings.shortcutDidChange().subscribe([this] { show(); });
  if (services_.shortcutAccessChanged != nullptr)
    accessChanges_ = services_.shortcutAccessChanged->subscribe([this] { show(); });
  show();
}

void ShortcutStep::showEvent(QShowEvent* event) {
  FormPage::showEvent(event);
  if (services_.shortcutTrials != nullptr) services_.shortcutTrials->ask(true);
}

void ShortcutStep::hideEvent(QHideEvent* event) {
  FormPage::hideEvent(event);
  if (services_.shortcutTrials != nullptr) services_.shortcutTrials->ask(false);
}

std::optional<ShortcutConfiguration> ShortcutStep::offer() const {
  const auto shortcut = services_.settings.shortcut();
  // Most keyboards keep Fn to themselves, and no desktop can tell which do.
  const bool isHeard = (shortcut.modifierRawValue & keyModifier::function) == 0 &&
                       (shortcut.kind == ShortcutConfiguration::Kind::disabled ||
                        !services_.canHearShortcut || services_.canHearShortcut(shortcut));
  if (isHeard || proposals_.empty()) return std::nullopt;
  return proposals_.front().first;
}

void ShortcutStep::take(const ShortcutConfiguration& shortcut) {
  services_.settings.setShortcut(shortcut);
}

void ShortcutStep::show() {
  const auto shortcut = services_.settings.shortcut();
  current_->setTitle(shortcutTitle(shortcut));
  current_->setDescription(shortcutUse(shortcut, services_.tellsOfRelease));
  for (const auto& [proposal, use] : proposals_)
    use->setText(isSameShortcut(proposal, shortcut) ? tr("In Use") : tr("Use"));
  const auto against = services_.shortcutNotice ? services_.shortcutNotice(shortcut) : std::string();
  const bool isAsked =
      services_.shortcutTrials != nullptr && services_.shortcutTrials->isOpen(shortcutRequest(shortcut));
  notice_->setText(isAsked ? QString() : inPlatformWords(against));
  request_->setText(isAsked ? inPlatformWords(against) : QString());
  checks_->leaveOut(against);
  offerChanged_();
}

}  // namespace murmel
