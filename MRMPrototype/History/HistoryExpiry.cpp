#include "History/HistoryExpiry.h"

#include <algorithm>
#include <set>
#include <utility>

namespace murmel {

HistoryExpiry::HistoryExpiry(Executor& executor, const Clock& clock, HistoryRepository& history,
                             std::function<HistoryRetention()> retention)
    : executor_(executor),
      clock_(clock),
      history_(history),
      retention_(std::move(retention)),
      changes_(history.didChange().subscribe([this] { look(); })) {
  look();
}

void HistoryExpiry::look() {
  if (isLooking_) return;  // told of its own deletion
  isLooking_ = true;
  next_.reset();
  const auto age = maximumAge(retention_());
  const auto sinceBoot = clock_.sinceBoot();
  const auto now = ages_.believed(clock_.wallNow(), sinceBoot);
  const auto& entries = history_.entries();
  std::set<Uuid> due;
  double oldest = 0;
  if (age) {
    const auto ages = ages_.of(entries, now, sinceBoot);
    for (std::size_t i = 0; i < ages.size(); ++i) {
      if (ages[i] > *age) {
        due.insert(entries[i].id);
      } else {
        oldest = std::max(oldest, ages[i]);
      }
    }
  }
  history_.remove(std::move(due));
  isLooking_ = false;
  if (!age || entries.empty()) return;
  constexpr Duration justAfter = std::chrono::milliseconds(1);
  const auto wait = secondsToDuration(std::min(*age - oldest, durationToSeconds(longestSleep))) + justAfter;
  next_ = executor_.after(wait, [this] { look(); });
}

}  // namespace murmel
