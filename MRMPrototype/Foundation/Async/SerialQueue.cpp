#include "Foundation/Async/SerialQueue.h"

#include "Foundation/Crypto/Wipe.h"

#include <utility>

#include <pthread.h>

namespace murmel {

SerialQueue::SerialQueue(Executor& executor, std::string label)
    : executor_(executor), label_(std::move(label)), thread_([this] { work(); }) {}

SerialQueue::~SerialQueue() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void SerialQueue::enqueue(Job job) {
  {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  wake_.notify_one();
}

void SerialQueue::work() {
  constexpr std::size_t visibleNameLength = 15;  // pthread_setname_np refuses more.
  const auto tail = label_.size() > visibleNameLength ? label_.size() - visibleNameLength : 0;
  pthread_setname_np(pthread_self(), label_.c_str() + tail);
  while (true) {
    Job job;
    {
      std::unique_lock lock(mutex_);
      wake_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
      if (stopping_) return;
      job = std::move(jobs_.front());
      jobs_.pop_front();
    }
    job();
    job = nullptr;
    // It may now sleep for hours.
    wipeStack();
    wipeVectorRegisters();
  }
}

}  // namespace murmel
