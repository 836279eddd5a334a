#pragma once

#include <functional>
#include <utility>

namespace murmel {

/// A thing that was registered somewhere (a timer, an observer, a watched descriptor) and withdraws itself
/// when the handle is destroyed. Move-only; an empty handle withdraws nothing.
class [[nodiscard]] Registration {
 public:
  Registration() = default;
  explicit Registration(std::move_only_function<void()> withdraw) : withdraw_(std::move(withdraw)) {}
  Registration(Registration&& other) noexcept : withdraw_(std::exchange(other.withdraw_, nullptr)) {}
  Registration& operator=(Registration&& other) noexcept {
    if (this != &other) {
      reset();
      withdraw_ = std::exchange(other.withdraw_, nullptr);
    }
    return *this;
  }
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;
  ~Registration() { reset(); }

  /// Withdraws now; a second call does nothing.
  void reset() {
    if (auto withdraw = std::exchange(withdraw_, nullptr)) withdraw();
  }

  explicit operator bool() const { return static_cast<bool>(withdraw_); }

 private:
  std::move_only_function<void()> withdraw_;
};

}  // namespace murmel
