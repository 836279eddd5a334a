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

/// The frame before which a stretch without any found pause is cut best: in its quietest half second.
/// `frames` are at least one.
std::size_t quietestCut(std::span<const FrameLevel> frames);

}  // namespace murmel
