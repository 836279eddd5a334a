#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/Wayland/PipeTransfers.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace murmel {

/// A thread that serves one connection to the compositor and the pipes that belong to it, and runs jobs one
/// at a time in between. A job may wait for the compositor, for nobody else.
class WaylandLoop {
 public:
  explicit WaylandLoop(std::unique_ptr<WaylandConnection> connection);
  ~WaylandLoop();
  WaylandLoop(const WaylandLoop&) = delete;
  WaylandLoop& operator=(const WaylandLoop&) = delete;

  void start();
  /// Ends the thread after the job that runs; the others are dropped with the loop.
  void stop();
  /// Runs `job` on the thread. Any thread.
  void enqueue(Job job);

  /// From here on: only on the thread, or before it has started.
  [[nodiscard]] WaylandConnection& connection() { return *connection_; }
  [[nodiscard]] PipeTransfers& pipes() { return pipes_; }
  [[nodiscard]] Instant now() const { return clock_.now(); }

 private:
  void run();
  void runJobs();
  void awaitWork();

  std::unique_ptr<WaylandConnection> connection_;
  PipeTransfers pipes_;
  SystemClock clock_;
  UniqueDescriptor wakeup_;
  std::atomic<bool> stopping_ = false;
  std::mutex mutex_;
  std::deque<Job> jobs_;
  std::thread thread_;
};

}  // namespace murmel
