#pragma once

#include "Foundation/Async/OneShot.h"
#include "Platform/MicrophoneAuthorization.h"

#include <optional>

namespace murmel {

/// The desktop's word and the user's answer, as a test wants them.
class FakeMicrophoneAuthorization final : public MicrophoneAuthorization {
 public:
  explicit FakeMicrophoneAuthorization(
      MicrophonePermissionPhase phase = MicrophonePermissionPhase::authorized)
      : phase_(phase) {}

  [[nodiscard]] MicrophonePermissionPhase phase() const override { return phase_; }
  /// Waits for `answer`.
  Task<bool> requestAccess() override;

  void setPhase(MicrophonePermissionPhase phase) { phase_ = phase; }
  /// The user answers the question that waits; false when none does. The phase stays what the test sets.
  bool answer(bool granted);

  [[nodiscard]] int requestCount() const { return requestCount_; }

 private:
  MicrophonePermissionPhase phase_;
  std::optional<OneShotSender<bool>> question_;
  int requestCount_ = 0;
};

}  // namespace murmel
