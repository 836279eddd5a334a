#pragma once

#include "Foundation/Environment.h"
#include "Platform/MicrophoneAuthorization.h"

#include <filesystem>

namespace murmel {

/// Linux asks nobody about microphones: whoever may talk to the sound server may record. So it is authorized
/// unless the server's socket refuses this user (`denied`) or a sandbox keeps the socket away (`restricted`).
/// A server that is not running, or has no source, is no matter of permission: the recording itself says so.
class PulseAudioAuthorization final : public MicrophoneAuthorization {
 public:
  struct Environment {
    std::filesystem::path socket;  ///< of the user's own server; empty when the environment names another one
    bool sandboxed = false;

    static Environment from(const murmel::Environment& variables);
    static Environment current() { return from(murmel::Environment::ofThisProcess()); }
  };

  explicit PulseAudioAuthorization(Environment environment) : environment_(std::move(environment)) {}

  [[nodiscard]] MicrophonePermissionPhase phase() const override;
  /// There is no dialog to show: the answer is the phase's.
  Task<bool> requestAccess() override;

 private:
  Environment environment_;
};

}  // namespace murmel
