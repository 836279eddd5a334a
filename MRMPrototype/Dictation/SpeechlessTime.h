#pragma once

#include "Audio/CapturedAudio.h"
#include "Segmentation/FrameLevelMeter.h"

#include <optional>
#include <vector>

namespace murmel {

/// How long nobody has spoken into a running recording. Pure: its time is the samples. It looks at ten
/// seconds at a time, because a level is speech only beside the quiet around it.
class SpeechlessTime {
 public:
  void append(const PendingCapturedAudio& audio);
  /// Counted in whole stretches of ten seconds; noise, music far away and breathing are not speech.
  [[nodiscard]] double seconds() const { return seconds_; }

 private:
  double sampleRate_ = 0;
  std::optional<FrameLevelMeter> meter_;
  std::vector<FrameLevel> frames_;
  double seconds_ = 0;
};

}  // namespace murmel
