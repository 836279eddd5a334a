#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Scope.h"
#include "Platform/Qt/QtExecutor.h"

#include <QCoreApplication>
#include <functional>
#include <optional>
#include <stdexcept>
#include <utility>

namespace murmel::test {

/// The application's real loop and clock, for tests against real programs. Waits for what is to be observed;
/// the limit is a hang, not a measure.
class RealLoop {
 public:
  QtExecutor executor;
  SystemClock clock;

  bool waitUntil(const std::function<bool()>& condition, Duration limit = std::chrono::seconds(60)) {
    const auto end = clock.now() + limit;
    while (!condition()) {
      if (clock.now() >= end) return false;
      // Conditions may depend on other processes, of which no event tells.
      const auto wake = executor.after(std::chrono::milliseconds(2), [] {});
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
  }

  void runFor(Duration duration) {
    const auto end = clock.now() + duration;
    waitUntil([&] { return clock.now() >= end; });
  }

  template <class T>
  T await(Task<T> task) {
    std::optional<T> result;
    scope.start(keep(std::move(task), result));
    if (!waitUntil([&] { return result.has_value(); })) throw std::runtime_error("no answer");
    return *std::move(result);
  }

 private:
  template <class T>
  static Task<void> keep(Task<T> task, std::optional<T>& result) {
    T value = co_await task;
    result = std::move(value);
  }

  int argumentCount_ = 0;
  QCoreApplication application_{argumentCount_, nullptr};
  Scope scope;
};

}  // namespace murmel::test
