#pragma once

#include "Dictation/OverlayController.h"
#include "Foundation/Async/Executor.h"

#include <string>
#include <utility>

namespace murmel {

/// Shows that something was heard although the state stays as it is. Main thread.
class PassingHint {
 public:
  PassingHint(Executor& executor, OverlayController& overlay) : executor_(executor), overlay_(overlay) {}

  /// At once, for as long as such a line takes to read.
  void show(const std::string& text) {
    display(text);
    timer_ = executor_.after(std::chrono::seconds(2), [this] { clear(); });
  }
  /// After a delay that nobody notices, until it is cleared.
  void showIfItLasts(std::string text) {
    timer_ =
        executor_.after(std::chrono::milliseconds(400), [this, text = std::move(text)] { display(text); });
  }
  void clear() {
    timer_.reset();
    if (std::exchange(visible_, false)) overlay_.showHint({});
  }

 private:
  void display(const std::string& text) {
    visible_ = true;
    overlay_.showHint(text);
  }

  Executor& executor_;
  OverlayController& overlay_;
  bool visible_ = false;
  Registration timer_;
};

}  // namespace murmel
