#include "MRMUpdatePolicy/UpdateSchedule.h"

#include <algorithm>

namespace murmel {

namespace {

/// How long nobody must have dictated to count as idle.
constexpr std::int64_t idleAfter = 5 * 60;
/// How soon circumstances are looked at again: they change without a word.
constexpr std::int64_t lookAgain = 10 * 60;

}  // namespace

UpdateScheduleDecision scheduleUpdateCheck(const UpdateScheduleFacts& facts) {
  using Kind = UpdateScheduleDecision::Kind;
  if (!facts.isAgreed) return {};
  if (facts.lastCheck) {
    // In the future: the clock was wrong then or is wrong now. A day from now keeps the promise either way.
    if (*facts.lastCheck > facts.now) return {Kind::wait, updateCheckInterval, true};
    const auto since = facts.now - *facts.lastCheck;
    // In steps, since a sleeping computer stops no clock but does stop timers.
    if (since < updateCheckInterval)
      return {Kind::wait, std::min(updateCheckInterval - since, lookAgain), false};
  }
  if (!facts.isOnline || facts.isMetered || facts.isDictating) return {Kind::wait, lookAgain, false};
  return {Kind::check, 0, false};
}

bool mayInstallUpdate(const UpdateInstallFacts& facts) {
  if (facts.isDictating) return false;
  return !facts.waitsForIdle || (facts.idleSeconds >= idleAfter && !facts.isOnBattery);
}

}  // namespace murmel
