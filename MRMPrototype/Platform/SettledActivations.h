#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "Platform/Workspace.h"

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace murmel {

/// Tells of applications that have come to the front and stayed there: every switch passes through no window
/// or a neighbour for a moment.
class SettledActivations {
 public:
  SettledActivations(Executor& executor, std::function<std::optional<RunningApplication>()> front)
      : executor_(executor), front_(std::move(front)) {}

  /// What is in front now is no news.
  void begin() { announced_ = front_(); }
  /// Another window may be in front.
  void changed() {
    pending_ = executor_.after(std::chrono::milliseconds(40), [this] { announce(); });
  }
  [[nodiscard]] Registration subscribe(std::function<void(const RunningApplication&)> handler) {
    return activations_.subscribe(std::move(handler));
  }

 private:
  void announce() {
    const auto front = front_();
    // No window at all is not told of, but the way back from there is.
    const bool isNews = front && (!announced_ || front->window != announced_->window);
    announced_ = front;
    if (isNews) activations_.emit(*front);
  }

  Executor& executor_;
  std::function<std::optional<RunningApplication>()> front_;
  std::optional<RunningApplication> announced_;
  Signal<const RunningApplication&> activations_;
  Registration pending_;
};

}  // namespace murmel
