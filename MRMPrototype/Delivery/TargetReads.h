#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Registration.h"
#include "Platform/ClipboardPasteboard.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace murmel {

/// Collects the target's reads of the text, from before the paste is sent, so that none is missed. Reads by
/// anybody else (clipboard managers read too) prove nothing. Main thread.
class TargetReads {
 public:
  explicit TargetReads(DesktopClient target) : target_(target) {}
  // Its subscriptions refer to it.
  TargetReads(const TargetReads&) = delete;
  TargetReads& operator=(const TargetReads&) = delete;

  /// Counts reads of the contents with this change count.
  void follow(ClipboardPasteboard& pasteboard, std::int64_t changeCount);

  /// Called at each read from now on.
  void notify(std::function<void(Instant)> onRead) { onRead_ = std::move(onRead); }

  [[nodiscard]] const std::vector<Instant>& times() const { return times_; }

 private:
  DesktopClient target_;
  std::vector<Instant> times_;
  std::function<void(Instant)> onRead_;
  std::vector<Registration> subscriptions_;
};

}  // namespace murmel
