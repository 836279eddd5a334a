#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/Wayland/PipeTransfers.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace murmel {

/// A thread that moves bytes through pipes, so that nobody who reads the clipboard waits for the main thread
/// or for another reader; with a connection to the compositor it serves that, too. It runs jobs one at a time
/// in between; a job may wait for the compositor, for nobody else.
class TransferLoop {
 public:
  /// `connection` may be null.
  explicit TransferLoop(std::unique_ptr<WaylandConnection> connection);
  ~TransferLoop();
  TransferLoop(const TransferLoop&) = delete;
  TransferLoop& operator=(const TransferLoop&) = delete;

  void start();
  /// `handler` runs once, on the thread, when the compositor is gone. Before the start.
  void onFailure(std::function<void()> handler) { failed_ = std::move(handler); }
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
  /// Of a connection that has failed nothing comes; jobs still get their answers, which are failures.
  [[nodiscard]] bool listens();

  std::unique_ptr<WaylandConnection> connection_;
  std::function<void()> failed_;
  PipeTransfers pipes_;  ///< the thread's while it runs; what is left of them ends on the owner's
  SystemClock clock_;
  UniqueDescriptor wakeup_;
  std::atomic<bool> stopping_ = false;
  std::mutex mutex_;
  std::deque<Job> jobs_;
  std::thread thread_;
};

}  // namespace murmel
