#include "Platform/Linux/Portal/TriedShortcuts.h"

#include <algorithm>
#include <array>
#include <utility>

namespace murmel {

namespace {

using Verdict = ShortcutTrial::Verdict;

constexpr std::array words{std::pair{Verdict::heard, "heard "}, std::pair{Verdict::silent, "silent "},
                           std::pair{Verdict::refused, "refused "}};

}  // namespace

/// What the portal watches, for whoever has had it installed.
struct TriedShortcuts::Installed {
  Handler handler;
  std::unique_ptr<InstalledShortcut> byPortal;
};

TriedShortcuts::TriedShortcuts(Executor& executor, const Clock& clock, Portal& portal,
                               const UsersKeymap& keymap, std::uint32_t version,
                               std::unique_ptr<ShortcutSource> next)
    : executor_(executor),
      clock_(clock),
      version_(std::to_string(version)),
      portal_(portal, keymap),
      next_(std::move(next)),
      progress_(portal_.progress().subscribe([this](ShortcutTrial::Event event) { take(event); })),
      portalChange_(portal_.permissionDidChange().subscribe([this] { permissionDidChange_.emit(); })),
      nextChange_(next_->permissionDidChange().subscribe([this] { permissionDidChange_.emit(); })) {}

std::string TriedShortcuts::nameOf(const ShortcutRequest& shortcut) const {
  return version_ + " " + std::to_string(static_cast<int>(shortcut.kind)) + " " +
         std::to_string(shortcut.keyCode) + " " + std::to_string(shortcut.modifiers);
}

Verdict TriedShortcuts::verdictOn(const ShortcutRequest& shortcut) const {
  return nameOf(shortcut) == tried_ ? trial_.verdict() : Verdict::open;
}

bool TriedShortcuts::usesPortal(const ShortcutRequest& shortcut) const {
  const auto verdict = verdictOn(shortcut);
  return verdict == Verdict::open || verdict == Verdict::heard;
}

bool TriedShortcuts::isOpen(const ShortcutRequest& shortcut) const {
  return !tried_.empty() && verdictOn(shortcut) == Verdict::open;
}

ListenEventAccess TriedShortcuts::permission(const ShortcutRequest& shortcut) {
  auto access = usesPortal(shortcut) ? portal_.permission(shortcut) : next_->permission(shortcut);
  if (access.granted && verdictOn(shortcut) == Verdict::open) {
    access.reason =
        "Press the shortcut once: whether this desktop tells of it is known then. Where it does not, another "
        "way is taken.";
  }
  const bool wasRefused = verdictOn(shortcut) == Verdict::refused;
  if (!usesPortal(shortcut) && !access.granted) {
    access.reason = (wasRefused ? "The desktop did not bind the shortcut. "
                                : "The desktop has bound the shortcut, but does not tell of it. ") +
                    access.reason;
  }
  return access;
}

bool TriedShortcuts::tellsOfRelease(const ShortcutRequest& shortcut) {
  return usesPortal(shortcut) ? portal_.tellsOfRelease(shortcut) : next_->tellsOfRelease(shortcut);
}

std::unique_ptr<InstalledShortcut> TriedShortcuts::install(const ShortcutRequest& shortcut, Handler handler) {
  if (!usesPortal(shortcut)) return next_->install(shortcut, std::move(handler));
  if (!installed_.expired()) return nullptr;
  if (nameOf(shortcut) != tried_) {
    tried_ = nameOf(shortcut);
    const bool wasAsked = trial_.isAsked();
    trial_ = ShortcutTrial();
    if (wasAsked) take(ShortcutTrial::Event::asked);
  }
  struct Kept final : InstalledShortcut {
    bool enable() override { return installed->byPortal && installed->byPortal->enable(); }
    std::shared_ptr<Installed> installed = std::make_shared<Installed>();
  };
  auto kept = std::make_unique<Kept>();
  kept->installed->handler = handler;
  kept->installed->byPortal = portal_.install(shortcut, std::move(handler));
  if (!kept->enable()) return nullptr;
  installed_ = kept->installed;
  return kept;
}

void TriedShortcuts::ask(bool isAsked) {
  take(isAsked ? ShortcutTrial::Event::asked : ShortcutTrial::Event::leftAlone);
}

void TriedShortcuts::take(ShortcutTrial::Event event) {
  const auto before = trial_.verdict();
  trial_.take(event, clock_.now());
  follow();
  if (trial_.verdict() != before) permissionDidChange_.emit();
}

void TriedShortcuts::follow() {
  deadline_.reset();
  if (const auto end = trial_.deadline()) {
    deadline_ = executor_.after(std::max(Duration{}, Duration(*end - clock_.now())), [this] {
      trial_.pass(clock_.now());
      follow();
      if (trial_.verdict() == Verdict::silent) permissionDidChange_.emit();
    });
  }
  const auto installed = installed_.lock();
  if (trial_.verdict() != Verdict::silent || !installed || !installed->byPortal) return;
  // From now on the next road: the portal's late word would be a second press.
  executor_.post([kept = std::move(installed->byPortal)] {});
  const auto told = installed->handler;
  told(ShortcutActivity::lost);
}

std::string TriedShortcuts::memory() const {
  for (const auto& [verdict, word] : words) {
    if (verdict == trial_.verdict()) return word + tried_;
  }
  return {};
}

void TriedShortcuts::recall(const std::string& memory) {
  for (const auto& [verdict, word] : words) {
    if (!memory.starts_with(word)) continue;
    tried_ = memory.substr(std::string(word).size());
    trial_ = ShortcutTrial(verdict);
  }
}

}  // namespace murmel
