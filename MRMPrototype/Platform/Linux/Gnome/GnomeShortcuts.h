#pragma once

#include "Platform/CancelKey.h"
#include "Platform/Linux/Bus/SessionBus.h"
#include "Platform/Linux/Wayland/UsersKeymap.h"
#include "Platform/ShortcutSource.h"

#include <memory>

namespace murmel {

/// The shortcut on GNOME. With the extension of its shell: pressed, and released when the first of its
/// modifiers goes up. Without: a key binding of GNOME's settings for as long as Murmel runs, which starts and
/// stops. Main thread.
class GnomeShortcuts final : public ShortcutSource {
 public:
  /// All outlive this.
  GnomeShortcuts(SessionBus& bus, const UsersKeymap& keymap);

  [[nodiscard]] ListenEventAccess permission(const ShortcutRequest& shortcut) override;
  [[nodiscard]] std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& shortcut,
                                                           Handler handler) override;
  [[nodiscard]] bool hearsEveryKey() const override { return false; }
  [[nodiscard]] bool tellsOfRelease(const ShortcutRequest& shortcut) override;
  [[nodiscard]] Signal<>& permissionDidChange() override { return permissionDidChange_; }
  void resync() override {}

 private:
  [[nodiscard]] bool hasExtension();

  SessionBus& bus_;
  const UsersKeymap& keymap_;
  std::weak_ptr<void> installed_;  ///< while one exists
  Signal<> permissionDidChange_;
  Registration owner_;
};

/// Escape, for as long as it is wanted; with the extension alone.
class GnomeCancelKey final : public CancelKey {
 public:
  explicit GnomeCancelKey(SessionBus& bus) : bus_(bus) {}
  [[nodiscard]] Registration take(std::function<void()> pressed) override;

 private:
  SessionBus& bus_;
};

}  // namespace murmel
