#include "Platform/Linux/PulseAudio/PulseAudioAuthorization.h"

#include <cerrno>

#include <unistd.h>

namespace murmel {

PulseAudioAuthorization::Environment PulseAudioAuthorization::Environment::from(
    const murmel::Environment& variables) {
  Environment environment;
  environment.sandboxed = ::access("/.flatpak-info", F_OK) == 0 || variables.value("SNAP").has_value();
  if (variables.value("PULSE_SERVER")) return environment;
  if (const auto pulse = variables.value("PULSE_RUNTIME_PATH")) {
    environment.socket = std::filesystem::path(*pulse) / "native";
  } else if (const auto runtime = variables.value("XDG_RUNTIME_DIR")) {
    environment.socket = std::filesystem::path(*runtime) / "pulse" / "native";
  }
  return environment;
}

MicrophonePermissionPhase PulseAudioAuthorization::phase() const {
  if (environment_.socket.empty()) return MicrophonePermissionPhase::authorized;
  // A server may start, and a sandbox may be opened, while we run: looked up every time.
  if (::access(environment_.socket.c_str(), R_OK | W_OK) == 0) return MicrophonePermissionPhase::authorized;
  if (errno == EACCES || errno == EPERM) return MicrophonePermissionPhase::denied;
  return environment_.sandboxed ? MicrophonePermissionPhase::restricted
                                : MicrophonePermissionPhase::authorized;
}

Task<bool> PulseAudioAuthorization::requestAccess() {
  co_return phase() == MicrophonePermissionPhase::authorized;
}

}  // namespace murmel
