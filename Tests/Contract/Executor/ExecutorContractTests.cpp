#include "Foundation/Async/Scope.h"
#include "Foundation/Async/SerialQueue.h"
#include "Foundation/Async/Timers.h"
#include "Foundation/UniqueDescriptor.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Qt/QtExecutor.h"
#include "Support/Pipe.h"
#include "Support/Testing.h"

#include <QCoreApplication>
#include <QElapsedTimer>

namespace {

/// Drives an executor for a while: virtual time for the manual one, the event loop for Qt's.
class ManualLoop {
 public:
  ManualExecutor executor;
  void runFor(Duration duration) { executor.advance(duration); }
  bool runUntil(const std::function<bool()>& condition) { return executor.waitUntil(condition); }
};

class QtLoop {
 public:
  QtExecutor executor;
  void runFor(Duration duration) {
    QElapsedTimer timer;
    timer.start();
    while (timer.nsecsElapsed() < duration.count()) QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
  }
  bool runUntil(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 10'000)
      QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return condition();
  }

 private:
  int argumentCount_ = 0;
  QCoreApplication application_{argumentCount_, nullptr};
};

template <class Loop>
class ExecutorContract : public ::testing::Test {
 protected:
  Loop loop;
  Executor& executor = loop.executor;
};

using Loops = ::testing::Types<ManualLoop, QtLoop>;
TYPED_TEST_SUITE(ExecutorContract, Loops);

}  // namespace

TYPED_TEST(ExecutorContract, RunsPostedJobsInOrderAndNeverFromInsidePost) {
  std::vector<int> order;
  this->executor.post([&] {
    order.push_back(1);
    this->executor.post([&] { order.push_back(3); });
    order.push_back(2);
  });
  EXPECT_TRUE(order.empty());
  ASSERT_TRUE(this->loop.runUntil([&] { return order.size() == 3; }));
  EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TYPED_TEST(ExecutorContract, LosesNoJobPostedFromOtherThreads) {
  constexpr int perThread = 2'000;
  int count = 0;
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 3; ++thread) {
    threads.emplace_back([&] {
      for (int job = 0; job < perThread; ++job) this->executor.post([&] { ++count; });
    });
  }
  EXPECT_TRUE(this->loop.runUntil([&] { return count == 3 * perThread; }));
}

TYPED_TEST(ExecutorContract, RunsTimersByTheirDelayAndNotEarly) {
  std::vector<int> order;
  const auto late = this->executor.after(60ms, [&] { order.push_back(2); });
  const auto early = this->executor.after(20ms, [&] { order.push_back(1); });
  const auto never = this->executor.after(1h, [&] { order.push_back(3); });
  this->loop.runFor(10ms);
  EXPECT_TRUE(order.empty());
  ASSERT_TRUE((this->loop.runFor(200ms), order.size() == 2));
  EXPECT_EQ(order, (std::vector{1, 2}));
}

TYPED_TEST(ExecutorContract, WithdrawnTimersAndPassedOnHandles) {
  int fired = 0;
  auto withdrawn = this->executor.after(5ms, [&] { ++fired; });
  withdrawn.reset();
  {
    const auto scoped = this->executor.after(5ms, [&] { ++fired; });
  }
  Registration kept;
  kept = this->executor.after(5ms, [&] {
    ++fired;
    kept.reset();  // withdrawing a timer from inside itself is harmless
  });
  this->loop.runFor(50ms);
  EXPECT_EQ(fired, 1);
  auto over = this->executor.after(1ms, [] {});
  this->loop.runFor(20ms);
  const auto next = this->executor.after(5ms, [&] { ++fired; });
  over.reset();
  this->loop.runFor(50ms);
  EXPECT_EQ(fired, 2) << "the handle of a timer that is over withdraws no other";
}

TYPED_TEST(ExecutorContract, WatchesADescriptorUntilTheHandleGoes) {
  Pipe pipe(O_NONBLOCK);
  std::string received;
  bool ended = false;
  std::optional<Registration> watch = this->executor.watchReadable(pipe.readEnd.get(), [&] {
    std::array<char, 8> buffer{};
    const auto count = ::read(pipe.readEnd.get(), buffer.data(), buffer.size());
    if (count == 0) {
      ended = true;
      watch.reset();  // from inside its own callback
    } else if (count > 0) {
      received.append(buffer.data(), static_cast<std::size_t>(count));
    }
  });
  ASSERT_EQ(::write(pipe.writeEnd.get(), "abc", 3), 3);
  ASSERT_TRUE(this->loop.runUntil([&] { return received == "abc"; }));
  pipe.writeEnd.reset();
  ASSERT_TRUE(this->loop.runUntil([&] { return ended; })) << "a hang-up counts as readable";
}

TYPED_TEST(ExecutorContract, ASerialQueueAnswersOnTheMainThread) {
  std::vector<int> results;
  std::thread::id answeredOn;
  SerialQueue queue(this->executor, "contract");
  Scope scope;
  struct Ask {
    static Task<void> once(SerialQueue& queue, int value, std::vector<int>& results,
                           std::thread::id& answeredOn) {
      auto work = [value] { return value * 10; };
      auto asked = queue.run(work);
      const int result = co_await asked;
      results.push_back(result);
      answeredOn = std::this_thread::get_id();
    }
  };
  for (int value = 1; value <= 3; ++value) scope.start(Ask::once(queue, value, results, answeredOn));
  ASSERT_TRUE(this->loop.runUntil([&] { return results.size() == 3; }));
  EXPECT_EQ(results, (std::vector{10, 20, 30}));
  EXPECT_EQ(answeredOn, std::this_thread::get_id());
}

TYPED_TEST(ExecutorContract, ARepeatingTimerStopsWithItsHandle) {
  int ticks = 0;
  std::optional<RepeatingTimer> timer;
  timer.emplace(this->executor, 5ms, [&] {
    if (++ticks == 3) timer.reset();
  });
  this->loop.runFor(100ms);
  EXPECT_EQ(ticks, 3);
}
