#include "Foundation/Async/Clock.h"

#include <ctime>

namespace murmel {

Instant SystemClock::now() const {
  return std::chrono::steady_clock::now();
}

WallTime SystemClock::wallNow() const {
  return std::chrono::system_clock::now();
}

Duration SystemClock::sinceBoot() const {
  timespec time{};
  ::clock_gettime(CLOCK_BOOTTIME, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace murmel
