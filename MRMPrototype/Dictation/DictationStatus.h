#pragma once

#include "Dictation/DictationState.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"

#include <functional>
#include <string>

namespace murmel {

/// The one published state of dictation, and how long messages stay. Main thread.
class DictationStatus {
 public:
  /// `onRest` is called when a message or outcome has been shown long enough; it decides what is shown then.
  DictationStatus(Executor& executor, std::function<void()> onRest);

  [[nodiscard]] const DictationState& state() const { return state_; }
  /// Told after every change.
  [[nodiscard]] Signal<const DictationState&>& onChange() { return onChange_; }

  /// Shows `state` until something else is shown.
  void show(DictationState state);
  /// Shows `state`, and comes to rest after `hold` unless something else was shown meanwhile.
  void showFor(DictationState state, Duration hold);
  void showTransientError(std::string message);
  void showTransientWarning(std::string message);

  /// Takes the pending return to rest back, so that an old message cannot reset what comes next.
  void cancelRecovery();
  /// Gives a message whose return to rest was taken back its full time again.
  void resumeRecovery();
  [[nodiscard]] bool isRecoveryPending() const { return static_cast<bool>(recovery_); }

 private:
  void arm();

  Executor& executor_;
  std::function<void()> onRest_;
  DictationState state_;
  Duration hold_{};  ///< zero: the state stays
  Registration recovery_;
  Signal<const DictationState&> onChange_;
};

}  // namespace murmel
