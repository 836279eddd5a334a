#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Registration.h"
#include "Platform/ClipboardPasteboard.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace murmel {

/// Collects what the target asks of the text, from before the paste is sent, so that nothing is missed. What
/// others ask for (clipboard managers read too) proves nothing. Main thread.
class TargetReads {
 public:
  explicit TargetReads(DesktopClient target) : target_(target) {}
  // Its subscriptions refer to it.
  TargetReads(const TargetReads&) = delete;
  TargetReads& operator=(const TargetReads&) = delete;

  /// Counts reads of the contents with this change count.
  void follow(ClipboardPasteboard& pasteboard, std::int64_t changeCount);

  /// Called whenever the target has asked for something.
  void notify(std::function<void()> onAsked) { onAsked_ = std::move(onAsked); }

  /// When the target was given the text.
  [[nodiscard]] const std::vector<Instant>& times() const { return times_; }
  /// When it last asked for anything, the list of forms for instance.
  [[nodiscard]] std::optional<Instant> lastAsked() const { return lastAsked_; }
  /// How often somebody else asked for the text and did not get it.
  [[nodiscard]] int refused() const { return refused_; }

 private:
  DesktopClient target_;
  std::vector<Instant> times_;
  std::optional<Instant> lastAsked_;
  int refused_ = 0;
  std::function<void()> onAsked_;
  std::vector<Registration> subscriptions_;
};

}  // namespace murmel
