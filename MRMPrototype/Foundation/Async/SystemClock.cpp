#include "Foundation/Async/Clock.h"

namespace murmel {

Instant SystemClock::now() const {
  return std::chrono::steady_clock::now();
}

WallTime SystemClock::wallNow() const {
  return std::chrono::system_clock::now();
}

}  // namespace murmel
