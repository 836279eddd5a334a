#pragma once

#include "Foundation/Async/Clock.h"
#include "Platform/Qt/QtExecutor.h"
#include "Support/Awaiting.h"

#include <QCoreApplication>
#include <functional>
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
      const auto wake = executor.after(std::chrono::milliseconds(10), [] {});
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
    Awaiting<T> waiting(std::move(task));
    if (!waitUntil([&] { return waiting.done(); })) throw std::runtime_error("no answer");
    return std::move(*waiting);
  }

 private:
  int argumentCount_ = 0;
  QCoreApplication application_{argumentCount_, nullptr};
};

}  // namespace murmel::test
