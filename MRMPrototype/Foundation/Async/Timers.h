#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Task.h"

#include <functional>
#include <memory>

namespace murmel {

/// Completes after `delay`. Destroying the waiting coroutine withdraws the timer.
Task<void> sleepFor(Executor& executor, Duration delay);

/// Calls a function at a fixed interval, the first time after one interval. Main thread only; the function
/// may stop or destroy the timer.
class RepeatingTimer {
 public:
  RepeatingTimer(Executor& executor, Duration interval, std::function<void()> onTick);

 private:
  struct State {
    Executor& executor;
    Duration interval;
    std::function<void()> onTick;
    Registration pending;
  };
  static void arm(const std::shared_ptr<State>& state);

  std::shared_ptr<State> state_;
};

}  // namespace murmel
