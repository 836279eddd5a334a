#include "Recognition/WorkerLimits.h"

#include "Audio/CapturedAudio.h"

#include <algorithm>

namespace murmel {

Duration WorkerLimits::response(std::size_t byteCount) const {
  constexpr double timesRealTime = 2;
  const double audioSeconds = static_cast<double>(byteCount / 2) / recognitionSampleRate;
  const auto wanted = secondsToDuration(timesRealTime * audioSeconds) + responseBase;
  return std::min(longestResponse, std::max(shortestResponse, wanted));
}

}  // namespace murmel
