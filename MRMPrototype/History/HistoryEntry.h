#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/SpokenText.h"
#include "Foundation/Uuid.h"

#include <optional>
#include <string>

namespace murmel {

/// One finished dictation as the history keeps it.
struct HistoryEntry {
  Uuid id;
  /// Seconds since 2001-01-01 00:00:00 UTC. A double, so that a stored date reads back unchanged.
  double createdAt = 0;
  SpokenText text;
  std::string providerID;                ///< which recogniser produced it
  std::string language;                  ///< label for the user
  std::optional<int> unrecognizedParts;  ///< absent in older data

  friend bool operator==(const HistoryEntry&, const HistoryEntry&) = default;
};

/// The reference date of `HistoryEntry::createdAt`, in seconds since 1970-01-01 UTC.
inline constexpr double historyReferenceDate = 978'307'200;

inline double historyDate(WallTime moment) {
  return std::chrono::duration<double>(moment.time_since_epoch()).count() - historyReferenceDate;
}

}  // namespace murmel
