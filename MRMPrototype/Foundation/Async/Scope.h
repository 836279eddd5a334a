#pragma once

#include "Foundation/Async/Task.h"

#include <coroutine>
#include <cstddef>
#include <memory>

namespace murmel {

/// Owns running tasks. Destroying it cancels them by destroying their frames, newest first; whatever they
/// hold (timers, subscriptions, tokens) is given back by their destructors. Main thread only.
///
/// A scope must not be destroyed from inside one of its own tasks.
class Scope {
 public:
  Scope();
  ~Scope();
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;

  /// Runs `task` up to its first suspension and keeps it until it ends. An exception that leaves the task
  /// ends the process: it is a broken invariant that nobody is there to handle.
  void start(Task<void> task);

  /// Destroys every task that still runs.
  void cancelAll();

  /// Number of tasks that have not ended.
  [[nodiscard]] std::size_t size() const;

 private:
  struct State;
  struct Driver;
  static Driver drive(std::shared_ptr<State> state, Task<void> task);

  std::shared_ptr<State> state_;
};

}  // namespace murmel
