#pragma once

#include "Platform/IndicatorSurface.h"
#include "Platform/KeyboardPoster.h"
#include "Platform/SecureInput.h"
#include "Platform/ShortcutSource.h"
#include "Platform/Workspace.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace murmel {

// What stands for the services that a desktop does not have.

/// No application is known to be in front: texts are copied.
class NoWorkspace final : public Workspace {
 public:
  std::optional<RunningApplication> frontmostApplication() override { return std::nullopt; }
  [[nodiscard]] Registration onActivation(
      std::function<void(const RunningApplication&)> /*handler*/) override {
    return {};
  }
  [[nodiscard]] bool isTerminated(const RunningApplication& /*application*/) override { return false; }
  void activate(const RunningApplication& /*application*/) override {}
};

class NoKeyboard final : public KeyboardPoster {
 public:
  [[nodiscard]] bool mayPost() override { return false; }
  [[nodiscard]] bool canPost(PasteChord /*chord*/) override { return false; }
  void maskHeldModifiers() override {}
  Task<void> awaitReleasedModifiers() override { co_return; }
  PostResult post(PasteChord /*chord*/, const RunningApplication& /*target*/) override {
    return PostResult::unavailable;
  }
};

class NoShortcuts final : public ShortcutSource {
 public:
  /// `reason` says why not, and what to do instead.
  explicit NoShortcuts(std::string reason) : reason_(std::move(reason)) {}
  [[nodiscard]] ListenEventAccess permission(const ShortcutRequest& /*shortcut*/) override {
    return {false, reason_};
  }
  [[nodiscard]] std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& /*shortcut*/,
                                                           Handler /*handler*/) override {
    return nullptr;
  }
  [[nodiscard]] bool hearsEveryKey() const override { return false; }
  [[nodiscard]] Signal<>& permissionDidChange() override { return permissionDidChange_; }
  void resync() override {}

 private:
  std::string reason_;
  Signal<> permissionDidChange_;
};

/// Prompts that take the keyboard for themselves cannot be seen.
class UnseenSecureInput final : public SecureInput {
 public:
  [[nodiscard]] bool isEnabled() override { return false; }
};

class NoIndicator final : public IndicatorSurface {
 public:
  void show(const Picture& /*picture*/) override {}
  void hide() override {}
};

}  // namespace murmel
