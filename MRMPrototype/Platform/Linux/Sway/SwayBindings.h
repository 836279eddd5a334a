#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Platform/CancelKey.h"
#include "Platform/Linux/Sway/SwaySocket.h"
#include "Platform/ShortcutSource.h"

#include <memory>
#include <string>

namespace murmel {

/// The shortcut as a key binding of sway's, made and taken back while sway runs: nobody edits a
/// configuration. sway tells of the press and of the release, in their order. It tells of no release when
/// another key goes down meanwhile: then the next press ends what the first has begun. Main thread.
class SwayBindings final : public ShortcutSource {
 public:
  SwayBindings(Executor& executor, std::string path) : executor_(executor), path_(std::move(path)) {}

  [[nodiscard]] ListenEventAccess permission(const ShortcutRequest& shortcut) override;
  [[nodiscard]] std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& shortcut,
                                                           Handler handler) override;
  [[nodiscard]] bool hearsEveryKey() const override { return false; }
  [[nodiscard]] Signal<>& permissionDidChange() override { return permissionDidChange_; }
  void resync() override {}

 private:
  Executor& executor_;
  std::string path_;
  std::weak_ptr<void> installed_;  ///< while one exists
  Signal<> permissionDidChange_;
};

/// Escape, as a key binding for as long as it is wanted.
class SwayCancelKey final : public CancelKey {
 public:
  SwayCancelKey(Executor& executor, std::string path) : executor_(executor), path_(std::move(path)) {}
  [[nodiscard]] Registration take(std::function<void()> pressed) override;

 private:
  Executor& executor_;
  std::string path_;
};

}  // namespace murmel
