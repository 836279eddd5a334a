#include "History/HistoryAges.h"

#include <algorithm>
#include <utility>

namespace murmel {

WallTime HistoryAges::believed(WallTime calendar, Duration sinceBoot) {
  const Duration boot = calendar.time_since_epoch() - sinceBoot;
  // A calendar that goes back deletes nothing too early.
  if (!boot_ || boot <= *boot_ + tolerance) {
    jump_.reset();
  } else {
    if (!jump_ || std::chrono::abs(boot - jump_->boot) > tolerance) jump_ = Jump{boot, sinceBoot};
    if (sinceBoot - jump_->seenAt < doubt) return WallTime(*boot_ + sinceBoot);
    jump_.reset();
  }
  boot_ = boot;
  return calendar;
}

std::vector<double> HistoryAges::of(std::span<const HistoryEntry> entries, WallTime now, Duration sinceBoot) {
  std::vector<double> ages;
  std::map<Uuid, Duration> seen;
  double ageInFront = 0;
  for (const auto& entry : entries) {
    double age = historyDate(now) - entry.createdAt;
    const auto known = firstSeen_.find(entry.id);
    if (age < 0 || known != firstSeen_.end()) {
      const auto since = known != firstSeen_.end() ? known->second : sinceBoot;
      seen.emplace(entry.id, since);
      age = std::max(age < 0 ? ageInFront : age, durationToSeconds(sinceBoot - since));
    }
    ages.push_back(ageInFront = age);
  }
  firstSeen_ = std::move(seen);
  return ages;
}

}  // namespace murmel
