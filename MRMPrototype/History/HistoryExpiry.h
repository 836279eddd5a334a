#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "History/HistoryAges.h"
#include "History/HistoryRepository.h"

#include <chrono>
#include <functional>

namespace murmel {

/// Deletes entries of the history when they have reached the age that the user has chosen, also while nothing
/// else happens. Main thread.
class HistoryExpiry {
 public:
  /// The longest sleep: timers stand still while the machine is suspended, and the calendar may be set.
  static constexpr Duration longestSleep = std::chrono::minutes(10);

  /// Everything must outlive this.
  HistoryExpiry(Executor& executor, const Clock& clock, HistoryRepository& history,
                std::function<HistoryRetention()> retention);

  /// Deletes what is due, and wakes up for the next. Also for a changed retention and a woken machine.
  void look();

 private:
  Executor& executor_;
  const Clock& clock_;
  HistoryRepository& history_;
  std::function<HistoryRetention()> retention_;
  HistoryAges ages_;
  bool isLooking_ = false;
  Registration next_;
  Registration changes_;
};

}  // namespace murmel
