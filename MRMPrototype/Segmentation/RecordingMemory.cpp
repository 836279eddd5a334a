#include "Segmentation/RecordingMemory.h"

#include "Segmentation/SegmentCutter.h"

#include <algorithm>

namespace murmel {

namespace {

constexpr double usualSampleRate = 48'000;

/// The open segment, which grows by doubling. Everything else is made of one, and smaller.
std::size_t largestPiece(double sampleRate) {
  return static_cast<std::size_t>(2 * SegmentCutter::longestSeconds * sampleRate) * sizeof(float);
}

}  // namespace

bool RecordingMemory::isShort(double sampleRate) {
  sampleRate = std::max(sampleRate, usualSampleRate);
  if (sampleRate > sampleRate_) {
    // The segment itself, and the forms it takes on its way to the recogniser.
    auto aside = memory_.reserve(2 * largestPiece(sampleRate));
    if (!aside) return true;
    aside_ = std::move(aside);
    sampleRate_ = sampleRate;
  }
  return !memory_.canHave(largestPiece(sampleRate));
}

}  // namespace murmel
