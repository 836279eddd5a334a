#include "Platform/Fake/ManualExecutor.h"

#include <chrono>
#include <utility>
#include <vector>

#include <poll.h>
#include <sys/eventfd.h>

namespace murmel {

namespace {

// Long enough for a machine that does much else: what waits for it has failed.
constexpr auto hangLimit = std::chrono::seconds(60);
// 2026-01-01 00:00 UTC: any fixed date will do.
constexpr auto firstWallTime = std::chrono::sys_days(std::chrono::year(2026) / 1 / 1);

}  // namespace

ManualExecutor::ManualExecutor() : wakeup_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

ManualExecutor::~ManualExecutor() = default;

void ManualExecutor::post(Job job) {
  {
    const std::lock_guard lock(mutex_);
    posted_.push_back(std::move(job));
  }
  ::eventfd_write(wakeup_.get(), 1);
}

Registration ManualExecutor::after(Duration delay, Job job) {
  const TimerKey key{now() + delay, nextKey_++};
  timers_->emplace(key, std::move(job));
  return Registration([weak = std::weak_ptr(timers_), key] {
    if (const auto timers = weak.lock()) timers->erase(key);
  });
}

Registration ManualExecutor::watchReadable(int descriptor, std::move_only_function<void()> onReadable) {
  const auto key = nextKey_++;
  watches_->emplace(key, std::make_shared<Watch>(descriptor, std::move(onReadable)));
  return Registration([weak = std::weak_ptr(watches_), key] {
    if (const auto watches = weak.lock()) watches->erase(key);
  });
}

Instant ManualExecutor::now() const {
  return now_;
}

WallTime ManualExecutor::wallNow() const {
  return firstWallTime + std::chrono::duration_cast<WallTime::duration>(now().time_since_epoch());
}

Duration ManualExecutor::sinceBoot() const {
  return now().time_since_epoch();
}

bool ManualExecutor::runOnePosted() {
  Job job;
  {
    const std::lock_guard lock(mutex_);
    if (posted_.empty()) return false;
    job = std::move(posted_.front());
    posted_.pop_front();
  }
  job();
  return true;
}

bool ManualExecutor::runOneDueTimer() {
  if (timers_->empty() || timers_->begin()->first.first > now()) return false;
  auto job = timers_->extract(timers_->begin());
  job.mapped()();
  return true;
}

void ManualExecutor::runUntilIdle() {
  while (runOnePosted() || runOneDueTimer()) {
  }
}

void ManualExecutor::advance(Duration duration) {
  const auto end = now() + duration;
  runUntilIdle();
  while (!timers_->empty() && timers_->begin()->first.first <= end) {
    now_ = std::max(now(), timers_->begin()->first.first);
    runUntilIdle();
  }
  now_ = end;
  runUntilIdle();
}

void ManualExecutor::pollDescriptors(int timeoutMilliseconds) {
  std::vector<pollfd> descriptors{{wakeup_.get(), POLLIN, 0}};
  std::vector<std::pair<std::uint64_t, std::shared_ptr<Watch>>> watched;
  for (const auto& [key, watch] : *watches_) {
    watched.emplace_back(key, watch);
    descriptors.push_back({watch->descriptor, POLLIN, 0});
  }
  if (::poll(descriptors.data(), descriptors.size(), timeoutMilliseconds) <= 0) return;
  if (descriptors[0].revents != 0) {
    eventfd_t count = 0;
    ::eventfd_read(wakeup_.get(), &count);
  }
  for (std::size_t index = 0; index < watched.size(); ++index) {
    if (descriptors[index + 1].revents == 0 || !watches_->contains(watched[index].first)) continue;
    watched[index].second->onReadable();
  }
}

bool ManualExecutor::waitUntil(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + hangLimit;
  while (true) {
    pollDescriptors(0);
    runUntilIdle();
    if (condition()) return true;
    const auto left = deadline - std::chrono::steady_clock::now();
    if (left <= std::chrono::nanoseconds::zero()) return false;
    // A short wait besides the wake-up descriptor, because a condition may depend on neither jobs nor
    // descriptors.
    constexpr int conditionCheckMilliseconds = 20;
    pollDescriptors(conditionCheckMilliseconds);
  }
}

}  // namespace murmel
