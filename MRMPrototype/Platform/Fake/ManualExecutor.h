#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/UniqueDescriptor.h"

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>

namespace murmel {

/// The main loop of the tests, and their clock: time stands still until a test moves it.
///
/// Real threads and descriptors take part through `waitUntil`, which blocks in real time until a condition
/// holds; virtual time does not pass meanwhile.
class ManualExecutor final : public Executor, public Clock {
 public:
  ManualExecutor();
  ~ManualExecutor() override;

  void post(Job job) override;
  [[nodiscard]] Registration after(Duration delay, Job job) override;
  [[nodiscard]] Registration watchReadable(int descriptor,
                                           std::move_only_function<void()> onReadable) override;
  [[nodiscard]] Instant now() const override;
  [[nodiscard]] WallTime wallNow() const override;
  [[nodiscard]] Duration sinceBoot() const override;

  /// Runs everything that is posted, and what that posts, until nothing is left. Due timers run too.
  void runUntilIdle();
  /// Moves time forward, stopping at each timer that becomes due on the way.
  void advance(Duration duration);
  /// Runs jobs, due timers and readable descriptors until `condition` holds. False when it does not within
  /// ten seconds of real time: a hang, not a measure.
  bool waitUntil(const std::function<bool()>& condition);

  [[nodiscard]] std::size_t pendingTimers() const { return timers_->size(); }

 private:
  using TimerKey = std::pair<Instant, std::uint64_t>;
  struct Watch {
    int descriptor;
    std::move_only_function<void()> onReadable;
  };

  bool runOnePosted();
  bool runOneDueTimer();
  void pollDescriptors(int timeoutMilliseconds);

  std::atomic<Instant> now_{Instant{}};  ///< threads that wait for workers ask for it, too
  std::uint64_t nextKey_ = 0;
  std::shared_ptr<std::map<TimerKey, Job>> timers_ = std::make_shared<std::map<TimerKey, Job>>();
  std::shared_ptr<std::map<std::uint64_t, std::shared_ptr<Watch>>> watches_ =
      std::make_shared<std::map<std::uint64_t, std::shared_ptr<Watch>>>();
  std::mutex mutex_;
  std::deque<Job> posted_;
  UniqueDescriptor wakeup_;
};

}  // namespace murmel
