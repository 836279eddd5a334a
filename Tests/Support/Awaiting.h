#pragma once

#include "Foundation/Async/Scope.h"
#include "Foundation/Async/Task.h"

#include <memory>
#include <optional>
#include <utility>

namespace murmel {

/// Runs a task and keeps what it gives. Destroying it cancels the task.
template <class T>
class Awaiting {
 public:
  explicit Awaiting(Task<T> task) { scope_.start(keep(std::move(task), result_)); }

  [[nodiscard]] bool done() const { return result_->has_value(); }
  T& operator*() { return **result_; }
  T* operator->() { return &**result_; }
  void cancel() { scope_.cancelAll(); }

 private:
  static Task<void> keep(Task<T> task, std::shared_ptr<std::optional<T>> result) {
    auto value = co_await task;
    result->emplace(std::move(value));
  }

  std::shared_ptr<std::optional<T>> result_ = std::make_shared<std::optional<T>>();
  Scope scope_;
};

}  // namespace murmel
