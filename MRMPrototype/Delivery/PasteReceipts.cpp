#include "Delivery/PasteReceipts.h"

#include <algorithm>

namespace murmel {

void PasteReceipts::noteRead(Instant at) {
  if (at < postedAt_) return;
  ++reads_;
  lastRead_ = lastRead_ ? std::max(*lastRead_, at) : at;
}

Duration PasteReceipts::quiet() const {
  constexpr int mostOfStrangers = 2;
  if (reads_ < usualReads_.value_or(hurried_ ? 0 : mostOfStrangers)) return missingReadTime;
  return hurried_ ? hurriedQuietTime : quietTime;
}

PasteReceipts::Verdict PasteReceipts::verdict(Instant now) const {
  const auto deadline = postedAt_ + latestRestore;
  const auto due = lastRead_ ? std::min(*lastRead_ + quiet(), deadline) : deadline;
  if (now < due) return {Step::wait, due};
  return {lastRead_ ? Step::restore : Step::neverRead, due};
}

}  // namespace murmel
