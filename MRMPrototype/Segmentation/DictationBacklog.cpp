#include "Segmentation/DictationBacklog.h"

#include <algorithm>

namespace murmel {

bool DictationBacklog::update(double seconds, bool slowRequest) {
  maximum_ = std::max(maximum_, seconds);
  slowRequestObserved_ = slowRequestObserved_ || slowRequest;
  bool next = behind_;
  if (seconds > behindAboveSeconds || slowRequest) {
    next = true;
  } else if (seconds < caughtUpBelowSeconds) {
    next = false;
  }
  everBehind_ = everBehind_ || next;
  if (next == behind_) return false;
  behind_ = next;
  ++revision_;
  return true;
}

}  // namespace murmel
