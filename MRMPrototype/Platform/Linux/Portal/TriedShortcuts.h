#pragma once

#include "Foundation/Async/Executor.h"
#include "Platform/Linux/Portal/PortalShortcuts.h"

#include <memory>
#include <string>

namespace murmel {

/// The portal's shortcut for as long as nothing speaks against it, and the next road from there on: where the
/// portal refuses, or the user was asked to press the shortcut and no word of it came. Another shortcut is
/// tried anew. Main thread.
class TriedShortcuts final : public ShortcutSource, private ShortcutTrials {
 public:
  /// `version` is the portal's: what was found out about another one is void. The references outlive this.
  TriedShortcuts(Executor& executor, const Clock& clock, Portal& portal, const UsersKeymap& keymap,
                 std::uint32_t version, std::unique_ptr<ShortcutSource> next);

  [[nodiscard]] ListenEventAccess permission(const ShortcutRequest& shortcut) override;
  [[nodiscard]] std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& shortcut,
                                                           Handler handler) override;
  [[nodiscard]] bool tellsOfRelease(const ShortcutRequest& shortcut) override;
  [[nodiscard]] bool hearsEveryKey() const override { return false; }
  [[nodiscard]] Signal<>& permissionDidChange() override { return permissionDidChange_; }
  void resync() override {}
  [[nodiscard]] ShortcutTrials* trials() override { return this; }

 private:
  struct Installed;

  [[nodiscard]] bool isOpen(const ShortcutRequest& shortcut) const override;
  void ask(bool isAsked) override;
  void nothingHappened() override { take(ShortcutTrial::Event::nothingHappened); }
  [[nodiscard]] std::string memory() const override;
  void recall(const std::string& memory) override;

  [[nodiscard]] ShortcutTrial::Verdict verdictOn(const ShortcutRequest& shortcut) const;
  [[nodiscard]] bool usesPortal(const ShortcutRequest& shortcut) const;
  [[nodiscard]] std::string nameOf(const ShortcutRequest& shortcut) const;
  void take(ShortcutTrial::Event event);
  void follow();

  Executor& executor_;
  const Clock& clock_;
  std::string version_;
  PortalShortcuts portal_;
  std::unique_ptr<ShortcutSource> next_;
  std::string tried_;  ///< by which shortcut the trial is held
  ShortcutTrial trial_;
  std::weak_ptr<Installed> installed_;  ///< while the portal watches
  Signal<> permissionDidChange_;
  Registration deadline_;
  Registration progress_;
  Registration portalChange_;
  Registration nextChange_;
};

}  // namespace murmel
