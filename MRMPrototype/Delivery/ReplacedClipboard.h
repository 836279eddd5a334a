#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "Foundation/Async/Task.h"
#include "Platform/ClipboardPasteboard.h"

#include <cstdint>
#include <optional>

namespace murmel {

/// The way back to what the user had copied before a text was left on the clipboard for a paste by hand. Open
/// for two minutes, and only while that text still stands there. Main thread; the pasteboard outlives it.
class ReplacedClipboard {
 public:
  static constexpr Duration retention = std::chrono::minutes(2);

  ReplacedClipboard(Executor& executor, ClipboardPasteboard& pasteboard);

  /// `contents` stood there before the change that made the count `changeCount`.
  void offer(SharedSnapshot contents, std::int64_t changeCount);
  void withdraw();

  [[nodiscard]] bool isAvailable() const { return offered_.has_value(); }
  [[nodiscard]] Registration onAvailabilityChange(std::function<void(bool)> handler) {
    return availability_.subscribe(std::move(handler));
  }
  /// Whether it stands on the clipboard again.
  Task<bool> bringBack();

 private:
  struct Offer {
    SharedSnapshot contents;
    std::int64_t changeCount = 0;
    Registration expiry;
  };
  Executor& executor_;
  ClipboardPasteboard& pasteboard_;
  std::optional<Offer> offered_;
  Signal<bool> availability_;
  Registration changes_;
};

}  // namespace murmel
