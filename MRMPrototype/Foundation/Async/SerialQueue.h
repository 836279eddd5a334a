#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Task.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <type_traits>
#include <variant>

namespace murmel {

/// A thread of its own that runs one job at a time, in the order given: the place for work that blocks.
///
/// Destroying the queue waits for the job that runs and drops those that have not begun, so an owner that may
/// be destroyed while a job blocks must first make that job return. Coroutines that wait for a dropped job
/// are never resumed. The executor must outlive the queue.
class SerialQueue {
 public:
  /// `label` names the thread (15 bytes are visible in tools).
  SerialQueue(Executor& executor, std::string label);
  ~SerialQueue();
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;

  /// Runs `job` on the queue's thread. Any thread.
  void enqueue(Job job);

  /// Runs `function` on the queue's thread and gives its result on the main thread. Cancelling the waiting
  /// coroutine does not stop a function that has begun; its result is dropped.
  template <class Function>
  Task<std::invoke_result_t<Function&>> run(Function function) {
    using Result = std::invoke_result_t<Function&>;
    static_assert(!std::is_void_v<Result>, "give a result, std::monostate if there is none");
    auto [sender, receiver] = makeOneShot<Result>();
    Job job = [this, function = std::move(function), sender = std::move(sender)]() mutable {
      executor_.post(
          [result = function(), sender = std::move(sender)]() mutable { sender.send(std::move(result)); });
    };
    enqueue(std::move(job));
    auto answer = awaitAnswer(std::move(receiver));  // only a destroyed queue drops a job
    co_return co_await answer;
  }

 private:
  void work();

  Executor& executor_;
  std::string label_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<Job> jobs_;
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace murmel
