#include "Platform/Linux/Portal/PipeThread.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <utility>
#include <vector>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>

namespace murmel {

PipeThread::PipeThread() : wakeup_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), thread_([this] { run(); }) {}

PipeThread::~PipeThread() {
  stopping_ = true;
  ::eventfd_write(wakeup_.get(), 1);
  thread_.join();
}

void PipeThread::enqueue(Job job) {
  {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  ::eventfd_write(wakeup_.get(), 1);
}

void PipeThread::run() {
  pthread_setname_np(pthread_self(), "murmel-pipes");
  // A reader that goes away shows as an error of the write.
  sigset_t pipe;
  ::sigemptyset(&pipe);
  ::sigaddset(&pipe, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
  const SystemClock clock;
  while (!stopping_) {
    std::deque<Job> jobs;
    {
      const std::lock_guard lock(mutex_);
      jobs.swap(jobs_);
    }
    for (auto& job : jobs) job(transfers_, clock.now());
    transfers_.serve(clock.now());
    std::vector<pollfd> descriptors{{wakeup_.get(), POLLIN, 0}};
    transfers_.addDescriptors(descriptors);
    int wait = -1;
    if (const auto deadline = transfers_.nextDeadline()) {
      const auto left = std::max(Duration{}, Duration(*deadline - clock.now()));
      wait = static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
    }
    if (!stopping_) ::poll(descriptors.data(), descriptors.size(), wait);
    eventfd_t count = 0;
    ::eventfd_read(wakeup_.get(), &count);
  }
}

}  // namespace murmel
