#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace murmel::worker {

/// How long recordings are cut for the recogniser; seconds.
struct QuietCutLimits {
  double longest = 30;      ///< no piece is longer
  double earliest = 15;     ///< nor, but for the last, shorter
  double shortestLast = 5;  ///< a recogniser makes little of a scrap of speech
};

/// Where `samples` (16 kHz, mono) are cut best, as an offset.
std::size_t quietestSample(std::span<const std::int16_t> samples);

/// The pieces of `samples` (16 kHz, mono), in order and without gaps, cut where it is quietest.
std::vector<std::span<const std::int16_t>> cutAtQuietPlaces(std::span<const std::int16_t> samples,
                                                            const QuietCutLimits& limits = {});

/// The texts of these pieces, joined by blanks; what is too short for a word, or as even as silence and noise
/// are, is left out. The first error ends it.
std::expected<std::string, std::string> inPieces(
    std::span<const std::int16_t> samples, const QuietCutLimits& limits,
    const std::function<std::expected<std::string, std::string>(std::span<const std::int16_t>)>& recognise);

}  // namespace murmel::worker
