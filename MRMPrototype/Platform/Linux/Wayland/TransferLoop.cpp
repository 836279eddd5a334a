#include "Platform/Linux/Wayland/TransferLoop.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <utility>
#include <vector>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>

namespace murmel {

TransferLoop::TransferLoop(std::unique_ptr<WaylandConnection> connection)
    : connection_(std::move(connection)), wakeup_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

TransferLoop::~TransferLoop() {
  stop();
}

void TransferLoop::start() {
  thread_ = std::thread([this] { run(); });
}

void TransferLoop::stop() {
  stopping_ = true;
  ::eventfd_write(wakeup_.get(), 1);
  if (thread_.joinable()) thread_.join();
}

void TransferLoop::enqueue(Job job) {
  {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  ::eventfd_write(wakeup_.get(), 1);
}

void TransferLoop::run() {
  pthread_setname_np(pthread_self(), connection_ ? "murmel-wayland" : "murmel-pipes");
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

void TransferLoop::runJobs() {
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

bool TransferLoop::listens() {
  if (!connection_) return false;
  if (!connection_->hasFailed()) return true;
  if (const auto failed = std::exchange(failed_, nullptr)) failed();
  return false;
}

void TransferLoop::awaitWork() {
  auto* const display = listens() ? connection_->get() : nullptr;
  if (display != nullptr) {
    while (wl_display_prepare_read(display) != 0) {
      if (wl_display_dispatch_pending(display) < 0) return;
    }
    // What was dispatched just now may have begun a transfer of its own: that one is polled here, too.
    wl_display_flush(display);
  }
  std::vector<pollfd> descriptors{{wakeup_.get(), POLLIN, 0}};
  if (display != nullptr) descriptors.push_back({connection_->descriptor(), POLLIN, 0});
  pipes_.addDescriptors(descriptors);
  int wait = -1;
  if (const auto deadline = pipes_.nextDeadline()) {
    const auto left = std::max(Duration{}, Duration(*deadline - now()));
    wait = static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
  }
  ::poll(descriptors.data(), descriptors.size(), wait);
  if (display != nullptr) {
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
