#include "Delivery/InsertionFocusPolicy.h"

#include <algorithm>

namespace murmel {

bool InsertionFocusPolicy::isTransient(const RunningApplication& application) {
  return application.isPanel ||
         std::ranges::find(transientMenuBarApplications, application.bundleIdentifier) !=
             transientMenuBarApplications.end();
}

bool InsertionFocusPolicy::canBeTarget(const RunningApplication& application, pid_t ownProcess) {
  return application.client.processIdentifier != ownProcess && !isTransient(application);
}

std::optional<LiveInsertionBlock> firstPasteBlock(const PasteObservations& observations) {
  if (!observations.hasTarget || observations.targetTerminated) return LiveInsertionBlock::noTarget;
  if (!observations.targetInFront) {
    return observations.userActivatedAnother ? LiveInsertionBlock::appChanged
                                             : LiveInsertionBlock::targetNotActive;
  }
  if (observations.secureInput) return LiveInsertionBlock::secureInput;
  if (!observations.mayPost) return LiveInsertionBlock::noPermission;
  if (!observations.eventsAvailable) return LiveInsertionBlock::eventsUnavailable;
  return std::nullopt;
}

}  // namespace murmel
