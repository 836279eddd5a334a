#pragma once

#include "Foundation/Async/Signal.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <functional>
#include <memory>
#include <utility>

namespace murmel {

/// Stands between the chosen shortcut and whoever listens for it: while the user has paused the application,
/// or a shortcut is being recorded, there is none. Main thread.
class ShortcutGate {
 public:
  /// Both outlive this.
  ShortcutGate(std::function<ShortcutConfiguration()> chosen, Signal<>& chosenDidChange)
      : chosen_(std::move(chosen)), observer_(chosenDidChange.subscribe([this] { didChange_.emit(); })) {}

  [[nodiscard]] ShortcutConfiguration current() const {
    return isClosed() ? ShortcutConfiguration{} : chosen_();
  }
  /// Paused, or a shortcut is being recorded.
  [[nodiscard]] bool isClosed() const { return isPaused_ || *suspensions_ > 0; }
  [[nodiscard]] Signal<>& didChange() { return didChange_; }

  [[nodiscard]] bool isPaused() const { return isPaused_; }
  void setPaused(bool paused) {
    if (std::exchange(isPaused_, paused) != paused) didChange_.emit();
  }
  /// Until the handle is destroyed; any number at a time. The handle may outlive this.
  [[nodiscard]] Registration suspend() {
    ++*suspensions_;
    didChange_.emit();
    return Registration([this, weak = std::weak_ptr(suspensions_)] {
      const auto suspensions = weak.lock();
      if (!suspensions) return;
      --*suspensions;
      didChange_.emit();
    });
  }

 private:
  std::function<ShortcutConfiguration()> chosen_;
  bool isPaused_ = false;
  std::shared_ptr<int> suspensions_ = std::make_shared<int>(0);
  Signal<> didChange_;
  Registration observer_;
};

}  // namespace murmel
