#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/X11/X11Connection.h"

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace murmel {

/// A thread that serves one X connection: it hands every event to one function and runs jobs one at a time in
/// between. A job may wait for events without stopping them: clipboards have to answer others while they
/// themselves wait for an answer, and at every moment the main thread may be busy, or waiting for one of
/// them.
class X11EventLoop {
 public:
  explicit X11EventLoop(std::unique_ptr<X11Connection> connection);
  ~X11EventLoop();
  X11EventLoop(const X11EventLoop&) = delete;
  X11EventLoop& operator=(const X11EventLoop&) = delete;

  /// Starts the thread. `handle` gets each event; `idle` runs after events and, as long as it says that it
  /// has something to look after, every few seconds. At rest the thread sleeps.
  void start(std::function<void(const xcb_generic_event_t&)> handle, std::function<bool()> idle);

  /// Ends the wait of the job that runs, waits for the job and ends the thread. Jobs that have not begun are
  /// dropped with the loop.
  void stop();

  /// Runs `job` on the thread. Any thread.
  void enqueue(Job job);

  /// From here on: only on the thread, or before it has started.
  [[nodiscard]] X11Connection& connection() { return *connection_; }
  /// Handles events until `done` holds. False when `limit` passes before, or the loop or the server ends.
  bool pumpUntil(const std::function<bool()>& done, Duration limit);
  [[nodiscard]] Instant now() const { return clock_.now(); }

 private:
  void run();
  bool handleWaiting();
  bool hasJob();

  std::unique_ptr<X11Connection> connection_;
  SystemClock clock_;
  UniqueDescriptor wakeup_;
  std::function<void(const xcb_generic_event_t&)> handle_;
  std::function<bool()> idle_;
  std::atomic<bool> stopping_ = false;
  std::mutex mutex_;
  std::deque<Job> jobs_;
  std::thread thread_;
};

}  // namespace murmel
