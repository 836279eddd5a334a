#pragma once

#include "Delivery/PreviousClipboard.h"
#include "Foundation/Async/Task.h"
#include "Foundation/SpokenText.h"
#include "Platform/ClipboardPasteboard.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// By what the application recognises its own contents later.
struct ClipboardOwnership {
  std::optional<std::string> marker;  ///< bytes written with the transcript
  std::int64_t changeCount = 0;       ///< of the pasteboard, right after the transcript was written
};

/// A transcript on a pasteboard for the moment of a paste, and what stood there before. Main thread; the
/// pasteboard must outlive it. Dropping it leaves the pasteboard as it is.
class ClipboardTransaction {
 public:
  /// The type that carries the marker.
  static std::string ownershipType(std::string_view applicationIdentifier);

  /// Writes `text` to the pasteboard, marked private and as ours, for the eyes of `reader` alone. What stood
  /// there before is what `previous` has captured; the paste does not wait for it. Nothing when the
  /// pasteboard could not be taken; it is as it was then.
  static Task<std::optional<ClipboardTransaction>> open(ClipboardPasteboard& pasteboard, SpokenText text,
                                                        std::string ownershipType, DesktopClient reader,
                                                        PreviousClipboard& previous);

  /// Whether the pasteboard still holds exactly what this transaction wrote.
  [[nodiscard]] Task<bool> stillOwnsTemporaryContents() const;

  enum class Restoration {
    restored,
    notOwned,     ///< somebody has written in between, whose contents stay untouched
    nothingKept,  ///< what stood there before was not to be had
  };
  enum class Otherwise { keepTranscript, clear };
  /// Puts back what stood there before, if the transaction still owns the pasteboard. When that was not to be
  /// had, the transcript stays there for everybody, or nothing does.
  [[nodiscard]] Task<Restoration> restorePrevious(Otherwise otherwise = Otherwise::keepTranscript);
  /// Leaves the transcript on the pasteboard for everybody, if it still stands there.
  [[nodiscard]] Task<bool> keepTranscript() const;

  [[nodiscard]] ClipboardPasteboard& pasteboard() const { return *pasteboard_; }
  [[nodiscard]] const ClipboardOwnership& ownership() const { return ownership_; }
  /// Everything that stood there before, as far as it was captured.
  [[nodiscard]] Task<std::optional<ClipboardCapture>> previous() const;
  /// Whether all of it is here by now.
  [[nodiscard]] bool previousIsComplete() const {
    return previous_ && previous_->isComplete(replacedChangeCount());
  }

 private:
  ClipboardTransaction(ClipboardPasteboard& pasteboard, std::shared_ptr<PreviousContents> previous,
                       PreviousClipboard& keeper, ClipboardOwnership ownership, std::string ownershipType);
  /// Every change counts one up.
  [[nodiscard]] std::int64_t replacedChangeCount() const { return ownership_.changeCount - 1; }

  ClipboardPasteboard* pasteboard_;
  std::shared_ptr<PreviousContents> previous_;
  PreviousClipboard* keeper_;
  ClipboardOwnership ownership_;
  std::string ownershipType_;
};

}  // namespace murmel
