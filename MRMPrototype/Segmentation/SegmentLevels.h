#pragma once

#include "Segmentation/FrameLevelMeter.h"

#include <cstddef>
#include <span>

namespace murmel {

/// What the levels of a segment say about speech in it.
enum class SpeechEvidence {
  none,      ///< digital silence, or a steady hum or noise: no recogniser needs to hear it
  doubtful,  ///< something moves in it, it may be speech
  clear,     ///< something as long as a word stands out of the noise
};

/// Judges all frames of one segment. When in doubt there is speech: quiet speech, speech in loud noise and
/// anything very short is let through.
SpeechEvidence speechEvidence(std::span<const FrameLevel> frames);

/// Where a stretch of speech is cut best.
struct QuietestPlace {
  std::size_t frame = 0;  ///< the first frame after the cut
  /// Whether nobody speaks for half a second around it. In fluent speech it is only the quietest moment.
  bool isPause = false;
};

/// The best place in `frames`, of which there is at least one: in noise, too, where no pause can be told from
/// its beginning.
QuietestPlace quietestPlace(std::span<const FrameLevel> frames);

}  // namespace murmel
