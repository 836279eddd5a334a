#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/SessionGuard.h"

#include <functional>
#include <optional>
#include <utility>

namespace murmel {

class FakeSessionGuard final : public SessionGuard {
 public:
  [[nodiscard]] std::optional<SessionObstacle> obstacle() override { return obstacle_; }
  [[nodiscard]] Registration onChange(std::function<void()> handler) override {
    return changed_.subscribe(std::move(handler));
  }

  [[nodiscard]] Registration onEnd(std::function<void()> handler) override {
    return ended_.subscribe(std::move(handler));
  }

  void become(std::optional<SessionObstacle> obstacle) {
    obstacle_ = obstacle;
    changed_.emit();
  }
  /// As a locker does that only grabs the keyboard.
  void becomeSilently(SessionObstacle obstacle) { obstacle_ = obstacle; }

 private:
  std::optional<SessionObstacle> obstacle_;
  Signal<> changed_;
  Signal<> ended_;
};

}  // namespace murmel
