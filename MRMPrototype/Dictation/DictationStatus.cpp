#include "Dictation/DictationStatus.h"

#include <utility>

namespace murmel {

namespace {

constexpr Duration errorHold = std::chrono::seconds(4);
constexpr Duration warningHold = std::chrono::seconds(6);

}  // namespace

DictationStatus::DictationStatus(Executor& executor, std::function<void()> onRest)
    : executor_(executor), onRest_(std::move(onRest)) {}

void DictationStatus::show(DictationState state) {
  showFor(std::move(state), Duration::zero());
}

void DictationStatus::showFor(DictationState state, Duration hold) {
  hold_ = hold;
  state_ = std::move(state);
  arm();
  // A copy: a subscriber may show something else while it is told.
  const auto shown = state_;
  onChange_.emit(shown);
}

void DictationStatus::showTransientError(std::string message) {
  showFor(DictationState::error(std::move(message)), errorHold);
}

void DictationStatus::showTransientWarning(std::string message) {
  showFor(DictationState::warning(std::move(message)), warningHold);
}

void DictationStatus::cancelRecovery() {
  recovery_.reset();
}

void DictationStatus::resumeRecovery() {
  arm();
}

void DictationStatus::arm() {
  recovery_.reset();
  if (hold_ > Duration::zero())
    recovery_ = executor_.after(hold_, [this] {
      recovery_.reset();
      onRest_();
    });
}

}  // namespace murmel
