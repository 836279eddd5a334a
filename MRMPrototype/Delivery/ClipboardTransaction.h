#pragma once

#include "Foundation/Async/Task.h"
#include "Foundation/SpokenText.h"
#include "Platform/ClipboardPasteboard.h"

#include <cstdint>
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

  /// Captures the pasteboard and writes `text` to it, marked private and as ours. Nothing when the pasteboard
  /// could not be taken; it is as it was then.
  static Task<std::optional<ClipboardTransaction>> open(ClipboardPasteboard& pasteboard, SpokenText text,
                                                        std::string ownershipType);

  /// Whether the pasteboard still holds exactly what this transaction wrote.
  [[nodiscard]] Task<bool> stillOwnsTemporaryContents() const;

  /// Puts back what stood there before, if the transaction still owns the pasteboard; false when somebody has
  /// written to it in between, whose contents stay untouched.
  [[nodiscard]] Task<bool> restorePrevious();

  [[nodiscard]] ClipboardPasteboard& pasteboard() const { return *pasteboard_; }
  [[nodiscard]] const ClipboardSnapshot& previous() const { return previous_.contents; }
  /// False when the owner of the previous contents did not deliver all of them.
  [[nodiscard]] bool previousIsComplete() const { return previous_.complete; }
  [[nodiscard]] const ClipboardOwnership& ownership() const { return ownership_; }

 private:
  ClipboardTransaction(ClipboardPasteboard& pasteboard, ClipboardCapture previous,
                       ClipboardOwnership ownership, std::string ownershipType);

  ClipboardPasteboard* pasteboard_;
  ClipboardCapture previous_;
  ClipboardOwnership ownership_;
  std::string ownershipType_;
};

}  // namespace murmel
