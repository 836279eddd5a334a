#pragma once

#include <functional>
#include <string>

namespace murmel {

/// A question or notice in a window of its own.
struct Alert {
  std::string title;
  std::string text;
  std::string acceptButton;
  std::string declineButton;  ///< empty: only one button
};

/// Main thread.
class AlertPresenter {
 public:
  virtual ~AlertPresenter() = default;
  /// Shows the alert without blocking; `answer` is told once whether it was accepted.
  virtual void show(Alert alert, std::function<void(bool accepted)> answer) = 0;
};

}  // namespace murmel
