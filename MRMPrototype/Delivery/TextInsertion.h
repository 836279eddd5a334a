#pragma once

#include "Delivery/LiveInsertionBlock.h"
#include "Delivery/TextDeliveryResult.h"
#include "Foundation/SpokenText.h"
#include "Foundation/Task.h"

#include <optional>

namespace murmel {

/// Brings finished text to the application that the user was working in. Main thread.
class TextInsertion {
 public:
  virtual ~TextInsertion() = default;

  /// Remembers the application in front as the target and follows the user's switches from now on.
  virtual void beginDictationSession() = 0;
  /// Forgets the target. Does nothing without a session.
  virtual void endDictationSession() = 0;

  /// Completes a pending restore of the previous clipboard at once; nothing when none is pending.
  virtual Task<std::optional<TextDeliveryResult>> finishPasteCleanup() = 0;

  /// Brings the target back to the front if needed and pastes; where that cannot be done, the text is put on
  /// the clipboard instead. Never loses the text.
  virtual Task<TextDeliveryResult> insertOrCopy(SpokenText text, bool liveOnly) = 0;

  /// Pastes one phrase while the recording goes on. False when it was not posted; `lastBlock` says why.
  virtual Task<bool> insertLiveSegment(SpokenText phrase) = 0;
  /// Why the last paste of this session was refused, if it was.
  [[nodiscard]] virtual std::optional<LiveInsertionBlock> lastBlock() const = 0;

  /// How the last paste of this session ended, as far as was known when it was posted.
  [[nodiscard]] virtual std::optional<TextDeliveryResult> lastResult() const = 0;

  /// Puts the text on the clipboard, marked private, for a paste by hand.
  virtual void writePrivateText(const SpokenText& text) = 0;
};

}  // namespace murmel
