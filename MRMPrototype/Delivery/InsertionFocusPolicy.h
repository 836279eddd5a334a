#pragma once

#include "Delivery/LiveInsertionBlock.h"
#include "Platform/Workspace.h"

#include <array>
#include <optional>
#include <string_view>

#include <sys/types.h>

namespace murmel {

/// What counts as the user's application, and when text may be pasted into it. Pure rules.
struct InsertionFocusPolicy {
  /// System processes that come to the front for a moment without the user having switched.
  static constexpr std::array<std::string_view, 3> transientMenuBarApplications = {
      "com.apple.controlcenter",
      "com.apple.systemuiserver",
      "com.apple.notificationcenterui",
  };

  /// One of those processes, or a panel or dock of the desktop.
  static bool isTransient(const RunningApplication& application);

  /// Whether text can be meant for `application`: it is neither transient nor this process.
  static bool canBeTarget(const RunningApplication& application, pid_t ownProcess);
};

/// What was seen right before a paste.
struct PasteObservations {
  bool hasTarget = false;
  bool targetTerminated = false;
  bool targetInFront = false;
  bool userActivatedAnother = false;  ///< matters only while the target is not in front
  bool secureInput = false;
  bool mayPost = false;
  bool eventsAvailable = false;
};

/// Why nothing may be pasted: the first check that fails. Nothing when all pass.
std::optional<LiveInsertionBlock> firstPasteBlock(const PasteObservations& observations);

}  // namespace murmel
