#pragma once

#include <cstdint>
#include <optional>

namespace murmel {

/// What decides about an automatic check. Times in seconds since 1970.
struct UpdateScheduleFacts {
  bool isAgreed = false;  ///< automatic checks are switched on
  std::optional<std::int64_t> lastCheck{};
  std::int64_t now = 0;
  bool isOnline = true;
  bool isMetered = false;  ///< a connection that costs by the byte
  bool isDictating = false;
};

struct UpdateScheduleDecision {
  enum class Kind {
    never,  ///< nobody agreed
    wait,   ///< look again after `seconds`
    check,
  };
  Kind kind = Kind::never;
  std::int64_t seconds = 0;
  /// The clock has gone back behind the last check: count the day from now on.
  bool forgetsLastCheck = false;

  friend bool operator==(const UpdateScheduleDecision&, const UpdateScheduleDecision&) = default;
};

/// Automatic checks are made at most once in so many seconds, whether they succeed or not.
inline constexpr std::int64_t updateCheckInterval = 86'400;

/// Whether to look for an update now. At most one check a day, also when the clock is set back or the
/// computer has slept for a month; none on a connection that is metered, none while somebody dictates, none
/// without agreement.
UpdateScheduleDecision scheduleUpdateCheck(const UpdateScheduleFacts& facts);

/// What decides about an installation that was asked for.
struct UpdateInstallFacts {
  bool isDictating = false;
  std::int64_t idleSeconds = 0;  ///< since the last dictation ended
  bool waitsForIdle = false;     ///< "Install when idle"
  bool isOnBattery = false;
};

/// Whether the installation may begin now: never during a dictation; when it waits for idle, not right after
/// one and not on battery.
bool mayInstallUpdate(const UpdateInstallFacts& facts);

}  // namespace murmel
