#pragma once

#include "Foundation/Async/Clock.h"
#include "History/HistoryEntry.h"

#include <map>
#include <optional>
#include <span>
#include <vector>

namespace murmel {

/// How old entries are where the calendar was wrong when they were made, or has just been set. Their dates
/// stay as they are, because it may be the present one that is wrong.
class HistoryAges {
 public:
  /// How long a calendar that has jumped ahead must hold before entries go by it: time to put right what was
  /// set by mistake, and nothing to notice after a correction.
  static constexpr Duration doubt = std::chrono::minutes(10);
  /// No jump: what time servers correct.
  static constexpr Duration tolerance = std::chrono::minutes(1);

  /// The present moment for deleting: the calendar, or what it would be without a jump ahead that is new.
  WallTime believed(WallTime calendar, Duration sinceBoot);

  /// Seconds for each of `entries`, which are newest first. One dated later than `now` is as old as the one
  /// that was made after it, and at least as old as it has been seen to be.
  std::vector<double> of(std::span<const HistoryEntry> entries, WallTime now, Duration sinceBoot);

 private:
  std::optional<Duration> boot_;  ///< when the machine started, as the calendar had it that is believed
  struct Jump {
    Duration boot;
    Duration seenAt;
  };
  std::optional<Jump> jump_;
  std::map<Uuid, Duration> firstSeen_;  ///< since boot; those that were dated in the future
};

}  // namespace murmel
