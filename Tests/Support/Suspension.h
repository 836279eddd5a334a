#pragma once

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Task.h"

#include <deque>
#include <optional>
#include <utility>

namespace murmel::test {

/// A place where the code under test waits until the test lets it go on, or runs through when the test has
/// given the answer ahead.
template <class T>
class Suspension {
 public:
  /// Every wait is answered with `value` at once.
  void answerWith(T value) { standing_ = std::move(value); }
  /// Waits are kept until `resume`.
  void holdBack() { standing_.reset(); }

  [[nodiscard]] bool isWaiting() const { return !waiting_.empty(); }
  void resume(T value) {
    auto sender = std::move(waiting_.front());
    waiting_.pop_front();
    sender.send(std::move(value));
  }

  Task<T> wait() {
    if (standing_) co_return *standing_;
    auto [sender, receiver] = makeOneShot<T>();
    waiting_.push_back(std::move(sender));
    auto value = co_await receiver;
    co_return *std::move(value);
  }

 private:
  std::optional<T> standing_;
  std::deque<OneShotSender<T>> waiting_;
};

}  // namespace murmel::test
