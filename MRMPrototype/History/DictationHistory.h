#pragma once

#include "History/HistoryEntry.h"

namespace murmel {

/// What a dictation does with the history. Failures show as the history's own status, never here. Main
/// thread.
class DictationHistory {
 public:
  virtual ~DictationHistory() = default;
  /// Puts the entry first and stores the list. What is due goes by itself.
  virtual void add(HistoryEntry entry) = 0;
};

}  // namespace murmel
