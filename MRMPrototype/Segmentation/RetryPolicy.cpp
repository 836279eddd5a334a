#include "Segmentation/RetryPolicy.h"

#include <algorithm>
#include <array>

namespace murmel {

namespace {

using namespace std::chrono_literals;

/// An engine that does not come up is asked again after this, and after twice the time whenever it fails.
constexpr Duration firstWait = 250ms;
constexpr Duration longestWait = 2s;

/// So often audio is tried before other audio goes first. One engine that died is no reason to wait.
constexpr int triesBeforeOthers = 2;
/// The waits before the tries after that.
constexpr std::array<Duration, 3> lastWaits{500ms, 1500ms, 3s};

/// Failures in a row, on at least two pieces of audio: it is not the audio.
constexpr int failuresOfAnything = 4;

/// Nothing comes of waiting when what the engine is made of is not there.
bool isPermanent(const MRMError& error) {
  return error.which() != MRMError::Case::workerFailed;
}

}  // namespace

void RetryPolicy::answered() {
  downSince_.reset();
  engineTries_ = audioFailures_ = audioFailed_ = 0;
}

RetryPolicy::Step RetryPolicy::engineFailed(const Tries& tries, const MRMError& why, Instant now) {
  if (isPermanent(why)) return lastResort(tries);
  return waitForEngine(tries, now);
}

RetryPolicy::Step RetryPolicy::audioFailed(Tries& tries, Duration took, bool othersMayGoFirst, Instant now) {
  if (!downSince_) downSince_ = now;
  ++tries.failures;
  tries.spent += took;
  ++audioFailures_;
  if (tries.failures == 1) ++audioFailed_;
  if (tries.onNextEngine) return {};
  if (audioFailures_ >= failuresOfAnything && audioFailed_ > 1) return waitForEngine(tries, now);

  const bool patient = tries.spent < patience;
  if (patient && tries.failures < triesBeforeOthers) return {Step::Kind::again, {}};
  if (othersMayGoFirst && !tries.wasAside) return {Step::Kind::setAside, {}};
  const auto wait = static_cast<std::size_t>(std::max(tries.failures - triesBeforeOthers, 0));
  if (patient && wait < lastWaits.size()) return {Step::Kind::again, lastWaits[wait]};
  return lastResort(tries);
}

RetryPolicy::Step RetryPolicy::waitForEngine(const Tries& tries, Instant now) {
  if (!downSince_) downSince_ = now;
  if (isHopeless(now)) return lastResort(tries);
  constexpr int mostDoublings = 8;
  const auto pause = firstWait * (1 << std::min(engineTries_++, mostDoublings));
  return {Step::Kind::again, std::min(pause, longestWait)};
}

bool RetryPolicy::isHopeless(Instant now) const {
  return hurriedSince_ && downSince_ && now - std::max(*hurriedSince_, *downSince_) >= patience;
}

RetryPolicy::Step RetryPolicy::lastResort(const Tries& tries) {
  return {tries.onNextEngine ? Step::Kind::giveUp : Step::Kind::nextEngine, {}};
}

}  // namespace murmel
