#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/Wayland/PipeTransfers.h"

#include <atomic>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace murmel {

/// A thread that moves bytes through pipes, so that nobody who reads the clipboard waits for the main thread
/// or for another reader.
class PipeThread {
 public:
  PipeThread();
  ~PipeThread();
  PipeThread(const PipeThread&) = delete;
  PipeThread& operator=(const PipeThread&) = delete;

  using Job = std::move_only_function<void(PipeTransfers&, Instant now)>;

  /// Runs `job` on the thread, where the transfers are, with that thread's time. Any thread.
  void enqueue(Job job);

 private:
  void run();

  PipeTransfers transfers_;  ///< the thread's while it runs; what is left of them ends on the owner's
  UniqueDescriptor wakeup_;
  std::atomic<bool> stopping_ = false;
  std::mutex mutex_;
  std::deque<Job> jobs_;
  std::thread thread_;
};

}  // namespace murmel
