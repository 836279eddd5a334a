#pragma once

#include "Platform/CancelKey.h"
#include "Platform/Linux/Bus/SessionBus.h"
#include "Platform/Linux/Wayland/UsersKeymap.h"
#include "Platform/ShortcutSource.h"

#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// The shortcut as a global one of KDE's (KGlobalAccel), made and taken back while Murmel runs. KDE tells of
/// the press and of the release, in their order; when another key goes down meanwhile, of the release when
/// that one goes up. Main thread.
class GlobalAccelShortcuts final : public ShortcutSource {
 public:
  /// Both outlive this.
  GlobalAccelShortcuts(SessionBus& bus, UsersKeymap& keymap);

  [[nodiscard]] ListenEventAccess permission(const ShortcutRequest& shortcut) override;
  [[nodiscard]] std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& shortcut,
                                                           Handler handler) override;
  [[nodiscard]] bool hearsEveryKey() const override { return false; }
  [[nodiscard]] Signal<>& permissionDidChange() override { return permissionDidChange_; }
  void resync() override {}

 private:
  [[nodiscard]] std::optional<int> keyOf(const ShortcutRequest& shortcut) const;

  SessionBus& bus_;
  UsersKeymap& keymap_;
  std::weak_ptr<void> installed_;  ///< while one exists
  Signal<> permissionDidChange_;
  Registration keymapChanges_;
};

/// Escape, as a global shortcut for as long as it is wanted.
class GlobalAccelCancelKey final : public CancelKey {
 public:
  explicit GlobalAccelCancelKey(SessionBus& bus);
  [[nodiscard]] Registration take(std::function<void()> pressed) override;

 private:
  SessionBus& bus_;
};

}  // namespace murmel
