#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "Foundation/Async/Timers.h"
#include "Platform/SessionGuard.h"

#include <functional>
#include <memory>
#include <optional>

namespace murmel {

/// What logind and the screen savers of the desktops tell on the buses, and what the display shows of lockers
/// that tell nobody. Without the buses it knows what it can see. Main thread; it never waits for an answer.
class DesktopSessionGuard final : public SessionGuard {
 public:
  /// Needs a QCoreApplication. `screenIsTaken` sees lockers that only take the screen and the keyboard.
  DesktopSessionGuard(Executor& executor, std::function<bool()> screenIsTaken);
  ~DesktopSessionGuard() override;
  DesktopSessionGuard(const DesktopSessionGuard&) = delete;
  DesktopSessionGuard& operator=(const DesktopSessionGuard&) = delete;

  [[nodiscard]] std::optional<SessionObstacle> obstacle() override;
  [[nodiscard]] Registration onChange(std::function<void()> handler) override {
    return changed_.subscribe(std::move(handler));
  }

  [[nodiscard]] Registration onEnd(std::function<void()> handler) override {
    return shutdown_.subscribe(std::move(handler));
  }

 private:
  class Listener;

  Executor& executor_;
  std::function<bool()> screenIsTaken_;
  Signal<> changed_;
  Signal<> shutdown_;
  std::unique_ptr<Listener> listener_;
  /// Runs from an answer that the screen is taken until it is given back.
  std::optional<RepeatingTimer> watch_;
};

}  // namespace murmel
