#pragma once

#include "Platform/MicrophoneAuthorization.h"

namespace murmel {

/// Goes with FileAudioInput: a file that could be opened may be listened to.
class FileAudioAuthorization final : public MicrophoneAuthorization {
 public:
  [[nodiscard]] MicrophonePermissionPhase phase() const override {
    return MicrophonePermissionPhase::authorized;
  }
  Task<bool> requestAccess() override { co_return true; }
};

}  // namespace murmel
