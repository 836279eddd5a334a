#include "Platform/Linux/X11/X11EventLoop.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>

namespace murmel {

namespace {

/// How often `idle` runs while it has something to look after and nothing happens.
constexpr Duration idleInterval = std::chrono::seconds(5);
constexpr Duration unlimited = std::chrono::hours(24);

}  // namespace

X11EventLoop::X11EventLoop(std::unique_ptr<X11Connection> connection)
    : connection_(std::move(connection)), wakeup_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

X11EventLoop::~X11EventLoop() {
  stop();
}

void X11EventLoop::stop() {
  stopping_ = true;
  ::eventfd_write(wakeup_.get(), 1);
  if (thread_.joinable()) thread_.join();
}

void X11EventLoop::start(std::function<void(const xcb_generic_event_t&)> handle, std::function<bool()> idle) {
  handle_ = std::move(handle);
  idle_ = std::move(idle);
  thread_ = std::thread([this] { run(); });
}

void X11EventLoop::enqueue(Job job) {
  {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  ::eventfd_write(wakeup_.get(), 1);
}

bool X11EventLoop::hasJob() {
  const std::lock_guard lock(mutex_);
  return !jobs_.empty();
}

void X11EventLoop::run() {
  pthread_setname_np(pthread_self(), "murmel-x11-clip");
  while (!stopping_) {
    pumpUntil([this] { return hasJob(); }, unlimited);
    if (stopping_) return;
    Job job;
    {
      const std::lock_guard lock(mutex_);
      if (!jobs_.empty()) {
        job = std::move(jobs_.front());
        jobs_.pop_front();
      }
    }
    if (job) {
      job();
    } else if (connection_->hasFailed()) {
      // Jobs still get their answers, which are failures; without a job there is nothing to wait for here.
      pollfd wake{wakeup_.get(), POLLIN, 0};
      ::poll(&wake, 1, -1);
      eventfd_t count = 0;
      ::eventfd_read(wakeup_.get(), &count);
    }
  }
}

bool X11EventLoop::handleWaiting() {
  while (const auto event = connection_->nextEvent()) handle_(*event);
  return idle_();
}

bool X11EventLoop::pumpUntil(const std::function<bool()>& done, Duration limit) {
  const auto deadline = now() + limit;
  while (true) {
    // Events that came in while a request waited for its answer are in the queue already and would not make
    // the descriptor readable.
    const bool mustLookAgain = handleWaiting();
    if (done()) return true;
    if (stopping_ || connection_->hasFailed()) return false;
    const auto left = deadline - now();
    if (left <= Duration{}) return false;
    xcb_flush(connection_->get());
    std::array<pollfd, 2> descriptors{{{connection_->descriptor(), POLLIN, 0}, {wakeup_.get(), POLLIN, 0}}};
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(
        mustLookAgain ? std::min<Duration>(left, idleInterval) : left);
    ::poll(descriptors.data(), descriptors.size(), static_cast<int>(wait.count()));
    eventfd_t count = 0;
    if (descriptors[1].revents != 0) ::eventfd_read(wakeup_.get(), &count);
  }
}

}  // namespace murmel
