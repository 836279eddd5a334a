#pragma once

#include "Delivery/ClipboardTransaction.h"
#include "Delivery/PreviousClipboard.h"
#include "Delivery/ReplacedClipboard.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Log.h"
#include "Foundation/SpokenText.h"
#include "Platform/ClipboardPasteboard.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// The clipboards as delivery uses them: what stood on them is captured while the user speaks, a text stands
/// on them for a paste, or stays for a paste by hand. Main thread; the pasteboards outlive it.
class DeliveryClipboards {
 public:
  /// A clipboard that has not taken a text by then hangs.
  static constexpr Duration patience = std::chrono::milliseconds(1'500);

  /// `primary` may be null.
  DeliveryClipboards(Executor& executor, ClipboardPasteboard& general, ClipboardPasteboard* primary,
                     std::string ownershipType, Logger logger);

  /// Begins to capture what the user has copied and, where a paste will need it, what is selected.
  void begin();
  void beginPrimary();
  /// Forgets what no paste has taken.
  void end();

  /// Puts the text on the clipboards for `reader` alone; the general pasteboard's transaction is the first.
  /// Empty when that could not be taken.
  Task<std::vector<ClipboardTransaction>> open(SpokenText text, DesktopClient reader, bool usesPrimary);
  /// Leaves the text on the general pasteboard, for everybody. Whether it stands there: false when that could
  /// not be taken, or has not answered in time.
  Task<bool> copy(SpokenText text);
  /// False when the last text that was to be left there since `end` is not there.
  [[nodiscard]] bool lastCopySucceeded() const { return lastCopySucceeded_; }

  /// What the text has replaced that was left there last.
  ReplacedClipboard& replaced() { return replaced_; }
  [[nodiscard]] const ReplacedClipboard& replaced() const { return replaced_; }

 private:
  Task<void> write(SpokenText text, std::shared_ptr<OneShotSender<bool>> answer);

  Executor& executor_;
  ClipboardPasteboard& general_;
  ClipboardPasteboard* primary_;
  std::string ownershipType_;
  Logger logger_;
  PreviousClipboard previousGeneral_;
  std::optional<PreviousClipboard> previousPrimary_;
  ReplacedClipboard replaced_;
  bool lastCopySucceeded_ = true;
  Scope scope_;  // last: its tasks use everything above
};

}  // namespace murmel
