#include "Delivery/PasteReceipts.h"

#include <algorithm>

namespace murmel {

void PasteReceipts::noteRead(Instant at) {
  if (at < postedAt_) return;
  lastRead_ = lastRead_ ? std::max(*lastRead_, at) : at;
}

PasteReceipts::Verdict PasteReceipts::verdict(Instant now) const {
  const auto deadline = postedAt_ + latestRestore;
  const auto quiet = hurried_ ? hurriedQuietTime : quietTime;
  const auto due = lastRead_ ? std::min(*lastRead_ + quiet, deadline) : deadline;
  if (now < due) return {Step::wait, due};
  return {lastRead_ ? Step::restore : Step::neverRead, due};
}

}  // namespace murmel
