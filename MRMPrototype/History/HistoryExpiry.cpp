#include "History/HistoryExpiry.h"

#include <algorithm>
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
  const auto retention = retention_();
  const auto now = clock_.wallNow();
  history_.prune(retention, now);
  isLooking_ = false;
  const auto age = maximumAge(retention);
  const auto& entries = history_.entries();
  if (!age || entries.empty()) return;
  const auto oldest = std::ranges::min_element(entries, {}, &HistoryEntry::createdAt)->createdAt;
  constexpr Duration justAfter = std::chrono::milliseconds(1);
  const auto wait = secondsToDuration(oldest + *age - historyDate(now)) + justAfter;
  next_ = executor_.after(std::clamp(wait, justAfter, longestSleep), [this] { look(); });
}

}  // namespace murmel
