#pragma once

#include "Platform/Linux/Portal/Portal.h"
#include "Platform/Linux/Portal/ShortcutTrial.h"
#include "Platform/Linux/Wayland/UsersKeymap.h"
#include "Platform/ShortcutSource.h"

#include <memory>
#include <string>

namespace murmel {

/// The shortcut where the desktop's portal watches it: pressed and released. The desktop may ask the user
/// first, and bind another key than the one that was asked for. Main thread.
class PortalShortcuts final : public ShortcutSource {
 public:
  /// Both outlive this.
  PortalShortcuts(Portal& portal, const UsersKeymap& keymap);

  [[nodiscard]] ListenEventAccess permission(const ShortcutRequest& shortcut) override;
  [[nodiscard]] std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& shortcut,
                                                           Handler handler) override;
  [[nodiscard]] bool hearsEveryKey() const override { return false; }
  [[nodiscard]] Signal<>& permissionDidChange() override { return portal_.returned(); }
  void resync() override {}

  /// What becomes of the binding: bound, heard, refused or lost.
  [[nodiscard]] Signal<ShortcutTrial::Event>& progress() { return progress_; }

 private:
  class Session;

  [[nodiscard]] std::string triggerOf(const ShortcutRequest& shortcut) const;

  Portal& portal_;
  const UsersKeymap& keymap_;
  std::weak_ptr<void> installed_;  ///< while one exists
  Signal<ShortcutTrial::Event> progress_;
};

}  // namespace murmel
