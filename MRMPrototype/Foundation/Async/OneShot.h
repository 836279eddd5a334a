#pragma once

#include "Foundation/Async/Task.h"

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

namespace murmel {

namespace detail {

template <class T>
struct OneShotState {
  std::optional<T> value;
  bool finished = false;
  std::coroutine_handle<> waiter;

  void finish() {
    finished = true;
    if (const auto resume = std::exchange(waiter, nullptr)) resume.resume();
  }
};

}  // namespace detail

/// The giving end of a value that is handed over once. Dropping it unsent tells the receiver "nothing".
template <class T>
class OneShotSender {
 public:
  explicit OneShotSender(std::shared_ptr<detail::OneShotState<T>> state) : state_(std::move(state)) {}
  OneShotSender(OneShotSender&&) noexcept = default;
  OneShotSender& operator=(OneShotSender&& other) noexcept {
    if (this != &other) {
      drop();
      state_ = std::move(other.state_);
    }
    return *this;
  }
  ~OneShotSender() { drop(); }

  /// Resumes the waiting coroutine at once, on this stack. Main thread only.
  void send(T value) {
    const auto state = std::exchange(state_, nullptr);
    if (!state) return;
    state->value.emplace(std::move(value));
    state->finish();
  }

 private:
  void drop() {
    if (const auto state = std::exchange(state_, nullptr)) state->finish();
  }

  std::shared_ptr<detail::OneShotState<T>> state_;
};

/// The waiting end. Awaiting gives the value, or nothing when the sender was dropped. Destroying the waiting
/// coroutine withdraws the wait.
template <class T>
class OneShotReceiver {
 public:
  explicit OneShotReceiver(std::shared_ptr<detail::OneShotState<T>> state) : state_(std::move(state)) {}

  class Awaiter {
   public:
    explicit Awaiter(std::shared_ptr<detail::OneShotState<T>> state) : state_(std::move(state)) {}
    Awaiter(const Awaiter&) = delete;
    Awaiter& operator=(const Awaiter&) = delete;
    ~Awaiter() { state_->waiter = nullptr; }

    [[nodiscard]] bool await_ready() const noexcept { return state_->finished; }
    void await_suspend(std::coroutine_handle<> waiter) noexcept { state_->waiter = waiter; }
    std::optional<T> await_resume() { return std::exchange(state_->value, std::nullopt); }

   private:
    std::shared_ptr<detail::OneShotState<T>> state_;
  };

  Awaiter operator co_await() const { return Awaiter(state_); }

 private:
  std::shared_ptr<detail::OneShotState<T>> state_;
};

template <class T>
struct OneShot {
  OneShotSender<T> sender;
  OneShotReceiver<T> receiver;
};

template <class T>
OneShot<T> makeOneShot() {
  auto state = std::make_shared<detail::OneShotState<T>>();
  return {OneShotSender<T>(state), OneShotReceiver<T>(state)};
}

/// The value. Where the sender was dropped nobody can answer any more, and whoever awaits this stays
/// suspended until its owner destroys it.
template <class T>
Task<T> awaitAnswer(OneShotReceiver<T> receiver) {
  auto value = co_await receiver;
  if (!value) co_await std::suspend_always{};
  co_return *std::move(value);
}

}  // namespace murmel
