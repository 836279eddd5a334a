#pragma once

#include "Audio/AudioConfigurationMonitor.h"
#include "Audio/AudioTap.h"
#include "Audio/CapturedAudio.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Task.h"
#include "Platform/AudioInput.h"
#include "Platform/MicrophoneAuthorization.h"
#include "Product/MRMError.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace murmel {

/// Records the default microphone into memory while a dictation is active: mono samples at the device's own
/// rate, an input level, and one notice when the device changes under the recording.
///
/// Main thread only. The executor, the input and the authorization must outlive it, and it must outlive the
/// tasks that it gives. What it captures is never written anywhere.
class AudioCaptureService {
 public:
  /// Removes audio files that earlier versions left in `temporaryDirectory`.
  AudioCaptureService(Executor& executor, AudioInput& input, MicrophoneAuthorization& authorization,
                      const std::filesystem::path& temporaryDirectory);
  ~AudioCaptureService();
  AudioCaptureService(const AudioCaptureService&) = delete;
  AudioCaptureService& operator=(const AudioCaptureService&) = delete;

  /// Begins a recording. The task ends when the microphone has delivered its first samples, which are kept.
  /// While a recording runs it does nothing; while another start is under way it fails. A failure, or a task
  /// that is destroyed before its end, leaves the service idle. Fails with `recordingFailed` alone.
  [[nodiscard]] Task<Result<void>> start();

  /// Ends the recording and hands over what came since the last hand-over, up to this very moment: an empty
  /// value when nothing came, nothing when nothing records. Makes a start that is under way fail.
  std::optional<PendingCapturedAudio> stop();

  /// Hands over what came since the last hand-over while the recording goes on; nothing when nothing is new.
  std::optional<PendingCapturedAudio> takePendingAudio();

  /// Ends the recording and throws away what has not been handed over. Makes a start that is under way fail.
  void discardCapturedAudio();

  [[nodiscard]] bool recording() const { return recording_; }
  /// Of the latest recording, in Hz; 0 before its first fragment.
  [[nodiscard]] double sampleRate() const { return tap_->sampleRate(); }

  /// Level of the latest fragment in 0…1; 0 unless recording, and when no fragment comes any more.
  [[nodiscard]] double normalizedLevel() const;

  /// How the recording fares; to be asked several times a second. Fine unless recording.
  CaptureCondition health(Instant now);

  /// Goes on with the device that has taken over, under the same recording; what the device before it has
  /// delivered is to be taken first. A failure ends the recording.
  [[nodiscard]] Task<Result<void>> restart();

  /// Whether the microphone may be used; asks the user where nobody has answered yet.
  [[nodiscard]] Task<bool> requestPermission();

  /// Called on the main thread, at most once a recording, when the device was exchanged, changed its format
  /// or was lost. The recording goes on until somebody stops it.
  void setOnConfigurationChange(std::function<void()> onConfigurationChange);

  /// Linear interpolation from `sourceRate` to `targetRate` (Hz), without a low-pass filter. Gives
  /// floor(targetRate × count / sourceRate) samples; equal rates give the input back. Finite samples give
  /// finite samples.
  [[nodiscard]] static PrivateVector<float> resample(PrivateVector<float> samples, double sourceRate,
                                                     double targetRate);

  /// Signed 16-bit little-endian samples on a symmetric scale: ±1 is ±32767, what is beyond is clipped.
  /// Throws std::invalid_argument when a sample is not finite: captured samples always are.
  [[nodiscard]] static PrivateVector<std::uint8_t> encodePCM16LE(std::span<const float> samples);

  /// Removes the entries of `directory` that are called "mrm-….wav". What cannot be listed or removed stays.
  static void cleanupTemporaryAudio(const std::filesystem::path& directory);

 private:
  class StartGuard;

  void endRecording();

  Executor& executor_;
  AudioInput& input_;
  MicrophoneAuthorization& authorization_;
  // Shared with the handler that the input holds.
  std::shared_ptr<AudioTap> tap_ = std::make_shared<AudioTap>();
  AudioConfigurationMonitor configurationMonitor_;
  std::function<void()> onConfigurationChange_;
  StartGuard* startUnderWay_ = nullptr;
  bool recording_ = false;
  CaptureHealth health_;
  bool healthHasBegun_ = false;
  bool levelIsStale_ = false;
  bool hearsSpeakers_ = false;
};

}  // namespace murmel
