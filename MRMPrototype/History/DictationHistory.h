#pragma once

#include "Foundation/Async/Clock.h"
#include "History/HistoryEntry.h"
#include "History/HistoryRetention.h"

namespace murmel {

/// What a dictation does with the history. Failures show as the history's own status, never here. Main
/// thread.
class DictationHistory {
 public:
  virtual ~DictationHistory() = default;
  /// Puts the entry first and stores the list.
  virtual void add(HistoryEntry entry) = 0;
  /// Removes what is older than `retention` allows at `now`.
  virtual void prune(HistoryRetention retention, WallTime now) = 0;
};

}  // namespace murmel
