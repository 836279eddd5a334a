#include "WorkerProcess/WorkerLimits.h"

#include <algorithm>

namespace murmel {

Duration WorkerLimits::response(Duration audio) const {
  constexpr int timesRealTime = 2;
  const auto wanted = timesRealTime * audio + responseBase;
  return std::min(longestResponse, std::max(shortestResponse, wanted));
}

}  // namespace murmel
