#pragma once

#include "Foundation/Async/Clock.h"

#include <cstdint>
#include <optional>

namespace murmel {

/// How a running recording fares, the worst first.
enum class CaptureCondition {
  fine,
  stalled,   ///< the microphone delivers nothing any more
  silent,    ///< nothing but digital zeros, as a dead or muted microphone does
  lagging,   ///< less sound arrives than time passes: some of it is lost
  clipping,  ///< too loud
  speakers,  ///< there is no microphone: it is what the speakers play
  tooQuiet,  ///< a signal far below speech
};

/// What has arrived since the last look.
struct CaptureFigures {
  std::uint64_t frames = 0;
  std::uint64_t clippedFrames = 0;  ///< at full scale
  std::uint64_t trailingZeros = 0;  ///< frames at the end that are exactly zero
  float peak = 0;                   ///< of the absolute values
  double sampleRate = 0;            ///< Hz; 0 before the first frame
};

/// Judges a recording by what arrives and when. Pure: the time is an argument.
class CaptureHealth {
 public:
  /// A recording begins. `hearsSpeakers`: there is no microphone.
  void begin(Instant now, bool hearsSpeakers = false);
  /// What has arrived by `now`; to be told several times a second.
  CaptureCondition observe(const CaptureFigures& arrived, Instant now);
  [[nodiscard]] CaptureCondition condition() const { return condition_; }
  /// Whether frames have stopped for so long that the last level says nothing any more.
  [[nodiscard]] bool levelIsStale(Instant now) const;

 private:
  /// The figures of one stretch of a few seconds.
  struct Stretch {
    Instant begin{};
    double seconds = 0;  ///< of sound
    std::uint64_t frames = 0;
    std::uint64_t clippedFrames = 0;
  };

  void follow(const CaptureFigures& arrived, Instant now);
  void closeStretch(Instant now);
  [[nodiscard]] CaptureCondition judged(Instant now) const;

  CaptureCondition condition_ = CaptureCondition::fine;
  Instant lastFrame_{};
  Stretch stretch_;
  double recordedSeconds_ = 0;
  double zeroSeconds_ = 0;
  float peak_ = 0;  ///< of the whole recording
  bool hearsSpeakers_ = false;
  bool lagging_ = false;
  bool clipping_ = false;
};

}  // namespace murmel
