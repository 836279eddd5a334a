#pragma once

#include <coroutine>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

namespace murmel {

template <class T>
class Task;

namespace detail {

class TaskPromiseBase {
 public:
  struct FinalAwaiter {
    [[nodiscard]] bool await_ready() const noexcept { return false; }
    template <class Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> finished) const noexcept {
      return finished.promise().continuation_;
    }
    void await_resume() const noexcept {}
  };

  [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }
  [[nodiscard]] FinalAwaiter final_suspend() const noexcept { return {}; }
  void unhandled_exception() noexcept { exception_ = std::current_exception(); }
  void setContinuation(std::coroutine_handle<> continuation) noexcept { continuation_ = continuation; }

 protected:
  void rethrowIfFailed() const {
    if (exception_) std::rethrow_exception(exception_);
  }

 private:
  std::coroutine_handle<> continuation_ = std::noop_coroutine();
  std::exception_ptr exception_;
};

template <class T>
class TaskPromise final : public TaskPromiseBase {
 public:
  Task<T> get_return_object() noexcept;
  template <class U>
  requires std::is_constructible_v<T, U&&>
  void return_value(U&& value) { value_.emplace(std::forward<U>(value)); }
  T take() {
    rethrowIfFailed();
    return std::move(*value_);
  }

 private:
  std::optional<T> value_;
};

template <>
class TaskPromise<void> final : public TaskPromiseBase {
 public:
  Task<void> get_return_object() noexcept;
  void return_void() const noexcept {}
  void take() const { rethrowIfFailed(); }
};

}  // namespace detail

/// A lazy computation that suspends: it starts when it is awaited, runs on the main thread, and is owned by
/// whoever awaits it. Destroying it destroys its frame and with it everything it waits for.
///
/// Written for g++ 12, which destroys aggregate temporaries of a `co_await` expression twice: bind the task
/// to a named variable and await that, pass parameters by value, and never make a capturing lambda a
/// coroutine.
template <class T = void>
class [[nodiscard]] Task {
 public:
  using promise_type = detail::TaskPromise<T>;
  using Handle = std::coroutine_handle<promise_type>;

  explicit Task(Handle handle) noexcept : handle_(handle) {}
  Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    if (this != &other) {
      if (handle_) handle_.destroy();
      handle_ = std::exchange(other.handle_, nullptr);
    }
    return *this;
  }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;
  ~Task() {
    if (handle_) handle_.destroy();
  }

  struct Awaiter {
    Handle handle;
    [[nodiscard]] bool await_ready() const noexcept { return false; }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> continuation) const noexcept {
      handle.promise().setContinuation(continuation);
      return handle;
    }
    T await_resume() const { return handle.promise().take(); }
  };

  /// Awaits once: the result is moved out.
  Awaiter operator co_await() const noexcept { return Awaiter{handle_}; }

 private:
  Handle handle_;
};

template <class T>
Task<T> detail::TaskPromise<T>::get_return_object() noexcept {
  return Task<T>(std::coroutine_handle<TaskPromise>::from_promise(*this));
}

inline Task<void> detail::TaskPromise<void>::get_return_object() noexcept {
  return Task<void>(std::coroutine_handle<TaskPromise>::from_promise(*this));
}

}  // namespace murmel
