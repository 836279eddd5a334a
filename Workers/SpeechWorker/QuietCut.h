#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace murmel::worker {

/// How long recordings are cut for the recogniser; seconds.
struct QuietCutLimits {
  double longest = 30;      ///< no piece is longer
  double earliest = 15;     ///< nor, but for the last, shorter
  double shortestLast = 5;  ///< a recogniser makes little of a scrap of speech
};

/// The pieces of `samples` (16 kHz, mono), in order and without gaps, cut where it is quietest.
std::vector<std::span<const std::int16_t>> cutAtQuietPlaces(std::span<const std::int16_t> samples,
                                                            const QuietCutLimits& limits = {});

}  // namespace murmel::worker
