#include "Foundation/Async/Scope.h"

#include <list>
#include <utility>

namespace murmel {

struct Scope::State {
  std::list<std::coroutine_handle<>> drivers;
};

/// The root frame of one task. It removes and destroys itself when the task ends.
struct Scope::Driver {
  struct promise_type {
    std::weak_ptr<State> state;
    std::list<std::coroutine_handle<>>::iterator position;

    struct FinalAwaiter {
      [[nodiscard]] bool await_ready() const noexcept { return false; }
      void await_suspend(std::coroutine_handle<promise_type> finished) const noexcept {
        if (const auto state = finished.promise().state.lock())
          state->drivers.erase(finished.promise().position);
        finished.destroy();
      }
      void await_resume() const noexcept {}
    };

    Driver get_return_object() noexcept {
      return Driver{std::coroutine_handle<promise_type>::from_promise(*this)};
    }
    [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }
    [[nodiscard]] FinalAwaiter final_suspend() const noexcept { return {}; }
    void return_void() const noexcept {}
    void unhandled_exception() const noexcept { std::terminate(); }
  };
  std::coroutine_handle<promise_type> handle;
};

Scope::Driver Scope::drive(std::shared_ptr<State> /*keepsListAlive*/, Task<void> task) {
  co_await task;
}

Scope::Scope() : state_(std::make_shared<State>()) {}

Scope::~Scope() {
  cancelAll();
}

void Scope::start(Task<void> task) {
  const auto driver = drive(state_, std::move(task)).handle;
  driver.promise().state = state_;
  driver.promise().position = state_->drivers.insert(state_->drivers.end(), driver);
  driver.resume();
}

void Scope::cancelAll() {
  while (!state_->drivers.empty()) {
    const auto driver = state_->drivers.back();
    state_->drivers.pop_back();
    driver.destroy();
  }
}

std::size_t Scope::size() const {
  return state_->drivers.size();
}

}  // namespace murmel
