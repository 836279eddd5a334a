#pragma once

#include "Platform/Linux/Bus/SessionBus.h"
#include "Platform/Linux/Wayland/UsersKeymap.h"
#include "Platform/ShortcutSource.h"

#include <memory>
#include <string>

namespace murmel {

/// The shortcut where the desktop's portal (xdg-desktop-portal) watches it: pressed and released. The desktop
/// may ask the user first, and bind another key than the one that was asked for. Main thread.
class PortalShortcuts final : public ShortcutSource {
 public:
  /// Makes the connection known to the portal as the application's. All outlive this.
  PortalShortcuts(SessionBus& bus, const UsersKeymap& keymap, const std::string& application);

  /// Granted with a request to press the shortcut once, until that has been heard.
  [[nodiscard]] ListenEventAccess permission(const ShortcutRequest& shortcut) override;
  [[nodiscard]] std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& shortcut,
                                                           Handler handler) override;
  [[nodiscard]] bool hearsEveryKey() const override { return false; }
  [[nodiscard]] Signal<>& permissionDidChange() override { return permissionDidChange_; }
  void resync() override {}

 private:
  enum class Standing { untold, heard, refused };
  class Session;

  [[nodiscard]] std::string triggerOf(const ShortcutRequest& shortcut) const;
  void stands(Standing standing);

  SessionBus& bus_;
  const UsersKeymap& keymap_;
  Standing standing_ = Standing::untold;
  std::weak_ptr<void> installed_;  ///< while one exists
  Signal<> permissionDidChange_;
};

}  // namespace murmel
