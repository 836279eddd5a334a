#pragma once

#include <chrono>

namespace murmel {

/// A length of time.
using Duration = std::chrono::nanoseconds;
/// A moment of the monotonic clock: for intervals and deadlines.
using Instant = std::chrono::steady_clock::time_point;
/// A moment of the calendar: for what is stored and shown.
using WallTime = std::chrono::system_clock::time_point;

/// The only source of the present moment. Thread-safe.
class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual Instant now() const = 0;
  [[nodiscard]] virtual WallTime wallNow() const = 0;
  /// Goes on while the machine sleeps, and nobody can set it.
  [[nodiscard]] virtual Duration sinceBoot() const = 0;
};

/// The machine's clocks.
class SystemClock final : public Clock {
 public:
  [[nodiscard]] Instant now() const override;
  [[nodiscard]] WallTime wallNow() const override;
  [[nodiscard]] Duration sinceBoot() const override;
};

/// `seconds` as a Duration, for constants that are given in decimal seconds.
constexpr Duration secondsToDuration(double seconds) {
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

constexpr double durationToSeconds(Duration duration) {
  return std::chrono::duration<double>(duration).count();
}

}  // namespace murmel
