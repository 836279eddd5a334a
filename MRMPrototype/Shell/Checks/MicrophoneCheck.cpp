#include "Foundation/Async/Timers.h"
#include "Shell/Checks/Checks.h"

#include <atomic>
#include <cmath>
#include <memory>

namespace murmel {

namespace {

/// The opened microphone, closed again whatever way the check ends.
class OpenMicrophone {
 public:
  explicit OpenMicrophone(AudioInput& input) : input_(input) {}
  ~OpenMicrophone() { input_.stop(); }
  OpenMicrophone(const OpenMicrophone&) = delete;
  OpenMicrophone& operator=(const OpenMicrophone&) = delete;

 private:
  AudioInput& input_;
};

std::string sentenceFor(AudioInputError error) {
  switch (error) {
    case AudioInputError::noDevice:
      return "There is no microphone: the sound server has no source.";
    case AudioInputError::noServer:
      return "No sound server answers. Start PulseAudio or PipeWire.";
    case AudioInputError::notStarted:
      return "The microphone was opened, but delivers nothing.";
  }
  std::unreachable();
}

}  // namespace

Task<CheckResult> checkMicrophone(CheckedServices services) {
  const auto phase = services.microphoneAuthorization.phase();
  if (phase == MicrophonePermissionPhase::denied)
    co_return CheckResult{CheckState::broken, "The sound server refuses this user."};
  if (phase == MicrophonePermissionPhase::restricted)
    co_return CheckResult{CheckState::broken, "This sandbox has no access to the sound server."};
  if (services.isRecording()) co_return CheckResult{CheckState::works, "It is recording at this moment."};

  auto heard = std::make_shared<std::atomic<bool>>(false);
  auto starting = services.microphone.start(
      [heard](std::span<const float> samples, AudioFormat) {
        for (const float sample : samples) {
          if (sample != 0) heard->store(true);
        }
      },
      [] {});
  const auto started = co_await starting;
  if (!started) co_return CheckResult{CheckState::broken, sentenceFor(started.error())};
  const OpenMicrophone open(services.microphone);
  constexpr Duration length = std::chrono::milliseconds(200);
  auto listening = sleepFor(services.executor, length);
  co_await listening;
  if (started->hearsSpeakers)
    co_return CheckResult{CheckState::limited,
                          "There is no microphone: only what the speakers play is heard."};
  if (!heard->load()) {
    co_return CheckResult{CheckState::limited,
                          "The microphone delivers digital silence. It may be muted or switched off."};
  }
  co_return CheckResult{CheckState::works, "The default source of the sound server was opened and heard."};
}

}  // namespace murmel
