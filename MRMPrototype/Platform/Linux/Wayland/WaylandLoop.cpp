#include "Platform/Linux/Wayland/WaylandLoop.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <utility>
#include <vector>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>

namespace murmel {

WaylandLoop::WaylandLoop(std::unique_ptr<WaylandConnection> connection)
    : connection_(std::move(connection)), wakeup_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

WaylandLoop::~WaylandLoop() {
  stop();
}

void WaylandLoop::start() {
  thread_ = std::thread([this] { run(); });
}

void WaylandLoop::stop() {
  stopping_ = true;
  ::eventfd_write(wakeup_.get(), 1);
  if (thread_.joinable()) thread_.join();
}

void WaylandLoop::enqueue(Job job) {
  {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  ::eventfd_write(wakeup_.get(), 1);
}

void WaylandLoop::run() {
  pthread_setname_np(pthread_self(), "murmel-wayland");
  // A reader that goes away shows as an error of the write.
  sigset_t pipe;
  ::sigemptyset(&pipe);
  ::sigaddset(&pipe, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
  while (!stopping_) {
    runJobs();
    pipes_.serve(now());
    if (!stopping_) awaitWork();
  }
}

void WaylandLoop::runJobs() {
  while (!stopping_) {
    Job job;
    {
      const std::lock_guard lock(mutex_);
      if (jobs_.empty()) return;
      job = std::move(jobs_.front());
      jobs_.pop_front();
    }
    job();
  }
}

void WaylandLoop::awaitWork() {
  auto* display = connection_->get();
  // Of a connection that has failed nothing comes; jobs still get their answers, which are failures.
  const bool listens = !connection_->hasFailed();
  if (listens) {
    while (wl_display_prepare_read(display) != 0) {
      if (wl_display_dispatch_pending(display) < 0) return;
    }
  }
  // What was dispatched just now may have begun a transfer of its own: that one is polled here, too.
  if (listens) wl_display_flush(display);
  std::vector<pollfd> descriptors{{wakeup_.get(), POLLIN, 0}};
  if (listens) descriptors.push_back({connection_->descriptor(), POLLIN, 0});
  pipes_.addDescriptors(descriptors);
  int wait = -1;
  if (const auto deadline = pipes_.nextDeadline()) {
    const auto left = std::max(Duration{}, Duration(*deadline - now()));
    wait = static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
  }
  ::poll(descriptors.data(), descriptors.size(), wait);
  if (listens) {
    if (descriptors[1].revents != 0) {
      wl_display_read_events(display);
    } else {
      wl_display_cancel_read(display);
    }
    wl_display_dispatch_pending(display);
  }
  eventfd_t count = 0;
  ::eventfd_read(wakeup_.get(), &count);
}

}  // namespace murmel
