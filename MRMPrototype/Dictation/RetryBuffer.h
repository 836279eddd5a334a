#pragma once

#include "Dictation/KeptRecording.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"

#include <memory>
#include <utility>

namespace murmel {

/// Keeps the recording of the last dictation that failed or was cancelled for a while, so that it can be
/// tried again. Main thread.
class RetryBuffer {
 public:
  RetryBuffer(Executor& executor, Duration retention) : executor_(executor), retention_(retention) {}

  /// In place of any earlier one; a recording without sound changes nothing.
  void keep(std::unique_ptr<KeptRecording> recording) {
    if (!recording || recording->empty()) return;
    hold(std::move(recording));
    expiry_ = executor_.after(retention_, [this] { hold(nullptr); });
  }
  /// Null when there is none.
  [[nodiscard]] std::unique_ptr<KeptRecording> take() {
    auto recording = std::move(recording_);
    hold(nullptr);
    return recording;
  }
  [[nodiscard]] bool available() const { return recording_ != nullptr; }
  [[nodiscard]] Signal<bool>& onChange() { return onChange_; }

 private:
  void hold(std::unique_ptr<KeptRecording> recording) {
    expiry_.reset();
    recording_ = std::move(recording);
    onChange_.emit(available());
  }

  Executor& executor_;
  Duration retention_;
  std::unique_ptr<KeptRecording> recording_;
  Registration expiry_;
  Signal<bool> onChange_;
};

}  // namespace murmel
