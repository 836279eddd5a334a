#pragma once

#include "Audio/CaptureHealth.h"
#include "Audio/CapturedAudio.h"
#include "Platform/AudioInput.h"

#include <array>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace murmel {

/// Where the audio thread leaves samples and the main thread fetches them.
///
/// `append` belongs to the audio thread, everything else to the main thread. They share `CaptureState` alone,
/// behind one lock that is held for the copy of a chunk, a swap or a number, never across a call out. In the
/// steady state `append` allocates nothing.
class AudioTap {
 public:
  /// Forgets the recording before and makes room for the next one.
  void reset();

  /// Mixes one fragment down to mono and keeps it; a fragment without whole frames is ignored. A frame with a
  /// sample that is not finite becomes silence, so that none can reach a recogniser.
  ///
  /// The first fragment decides the rate of the recording. One at another rate cannot join it: it is left out
  /// and the answer is false.
  bool append(std::span<const float> interleaved, AudioFormat format);

  /// What was captured since the last hand-over; nothing when there is nothing new.
  std::optional<PendingCapturedAudio> takePending();
  /// The last hand-over of a recording, empty if there is nothing new; nothing without a recording.
  std::optional<PendingCapturedAudio> finish();
  /// Throws the captured samples away and keeps their storage.
  void discard();

  /// What has arrived since the last call.
  [[nodiscard]] CaptureFigures takeFigures();

  /// Hz; 0 before the first fragment.
  [[nodiscard]] double sampleRate() const;
  /// Input level in 0…1.
  [[nodiscard]] float level() const;

 private:
  struct CaptureState {
    PrivateVector<float> capturedSamples;  // mono, at the device's rate
    double sampleRate = 0;                 // Hz; 0 means that no recording has been configured
    float currentLevel = 0;
    CaptureFigures figures;
  };
  static constexpr std::size_t scratchFrames = 2'048;

  mutable std::mutex lock_;
  CaptureState captureState_;
  std::array<float, scratchFrames> monoScratch_{};  // the audio thread's own
};

}  // namespace murmel
