#pragma once

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Log.h"
#include "Foundation/Registration.h"
#include "Platform/ClipboardPasteboard.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace murmel {

/// What stood on a clipboard, perhaps still being captured.
class PreviousContents {
 public:
  /// Null when what stood there with this change count was not captured at all. Waits for a capture that
  /// is under way, which ends at the latest 1.5 s after the clipboard was taken.
  static Task<std::optional<ClipboardCapture>> result(std::shared_ptr<PreviousContents> contents,
                                                      std::int64_t changeCount);

  /// Whether everything that stood there with this change count is here by now.
  [[nodiscard]] bool isComplete(std::int64_t changeCount) const {
    return capture_ && capture_->complete && capture_->changeCount == changeCount;
  }

 private:
  friend class PreviousClipboard;
  void finish(ClipboardCapture capture);

  std::optional<ClipboardCapture> capture_;
  std::vector<OneShotSender<bool>> waiters_;
};

/// Captures what the user has on a clipboard while they speak, so that a paste need not wait for it. Main
/// thread; the pasteboard outlives it.
class PreviousClipboard {
 public:
  PreviousClipboard(ClipboardPasteboard& pasteboard, Logger logger)
      : pasteboard_(pasteboard), logger_(std::move(logger)) {}

  /// Captures now and again after every change by somebody else, until `end`. Does nothing when it has begun.
  void begin();
  /// The contents have become those with this change count.
  void changed(std::int64_t changeCount);
  /// Forgets everything that no paste has taken.
  void end();

  /// What stands on the clipboard as far as it was captured; for the paste that replaces it now. Null before
  /// `begin`.
  [[nodiscard]] std::shared_ptr<PreviousContents> take() const { return latest_; }
  /// `contents` stand on the clipboard again, with this change count: they need not be captured anew.
  void standsAgain(const std::shared_ptr<PreviousContents>& contents, std::int64_t changeCount);

 private:
  void capture();
  Task<void> run(std::shared_ptr<PreviousContents> contents);

  ClipboardPasteboard& pasteboard_;
  Logger logger_;
  std::shared_ptr<PreviousContents> latest_;
  std::int64_t changedTo_ = 0;
  Registration changes_;
  Scope scope_;  // last: its tasks use everything above
};

}  // namespace murmel
