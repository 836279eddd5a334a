#pragma once

#include "Foundation/Async/Task.h"

namespace murmel {

/// The phase of the microphone permission. `denied` and `restricted` refuse dictation.
enum class MicrophonePermissionPhase { notDetermined, authorized, denied, restricted, unknown };

/// The desktop's word on whether this application may listen to the microphone. Main thread.
class MicrophoneAuthorization {
 public:
  virtual ~MicrophoneAuthorization() = default;
  [[nodiscard]] virtual MicrophonePermissionPhase phase() const = 0;
  /// Asks the user; true when the answer is yes.
  virtual Task<bool> requestAccess() = 0;
};

}  // namespace murmel
