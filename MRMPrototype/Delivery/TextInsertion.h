#pragma once

#include "Delivery/LiveInsertionBlock.h"
#include "Delivery/PasteSettlement.h"
#include "Delivery/TextDeliveryResult.h"
#include "Foundation/Async/Task.h"
#include "Foundation/Registration.h"
#include "Foundation/SpokenText.h"

#include <functional>
#include <optional>
#include <string_view>

namespace murmel {

/// Brings finished text to the application that the user was working in. Main thread.
class TextInsertion {
 public:
  virtual ~TextInsertion() = default;

  /// Remembers the application in front as the target and follows the user's switches from now on.
  virtual void beginDictationSession() = 0;
  /// The user has ended the recording: when the target goes from now on, the text does not go to the window
  /// that comes up behind it.
  virtual void recordingEnded() {}
  /// Forgets the target. Does nothing without a session.
  virtual void endDictationSession() = 0;

  /// Completes a pending restore of the previous clipboard at once; nothing when none is pending. When the
  /// target has not read the text yet, the restore would make it paste the old clipboard: then this waits for
  /// the read, at most until 2 s after the paste.
  virtual Task<std::optional<TextDeliveryResult>> finishPasteCleanup() = 0;

  /// Brings the target back to the front if needed and pastes; where that cannot be done, the text is put on
  /// the clipboard instead. Never loses the text: once begun it is carried out even when the task is
  /// destroyed. With `liveOnly` a text that cannot be pasted leaves the clipboard alone.
  virtual Task<TextDeliveryResult> insertOrCopy(SpokenText text, bool liveOnly) = 0;

  /// Whether phrases can be pasted as things are now: not while a held shortcut is in the way of the keys.
  [[nodiscard]] virtual bool mayInsertLive() { return true; }
  /// Pastes one phrase while the recording goes on. False when it was not posted, or posted and not read by
  /// the target within 2 s; `lastBlock` says why. Leaves the clipboard alone when it is not posted. From the
  /// first phrase on the target is fixed: a switch of application ends live insertion and is not undone.
  virtual Task<bool> insertLiveSegment(SpokenText phrase) = 0;
  /// Why the last paste of this session was refused, if it was.
  [[nodiscard]] virtual std::optional<LiveInsertionBlock> lastBlock() const = 0;

  /// How the last paste of this session ended, as far as is known by now.
  [[nodiscard]] virtual std::optional<TextDeliveryResult> lastResult() const = 0;

  /// False when a paste of this session has replaced something on the clipboard that was not captured wholly.
  [[nodiscard]] virtual bool clipboardWasKept() const { return true; }
  /// False when a text of this session that was to stand on the clipboard could not be put there.
  [[nodiscard]] virtual bool lastCopySucceeded() const { return true; }
  /// The keys by which the last target pastes ("Ctrl+Shift+V"), for the user's own hands.
  [[nodiscard]] virtual std::string_view pasteKeys() const { return "Ctrl+V"; }

  /// Puts the text on the clipboard, marked private, for a paste by hand. Whether it stands there. Once begun
  /// it is carried out even when the task is destroyed.
  virtual Task<bool> writePrivateText(SpokenText text) = 0;

  /// Tells how each paste that was sent turned out: after `insertionSent` this is what happened in the end.
  [[nodiscard]] virtual Registration onPasteSettled(std::function<void(PasteSettlement)> handler) = 0;

  /// The way back to what the user had copied before a text was left on the clipboard for a paste by hand:
  /// open for two minutes, as long as the text stands there.
  [[nodiscard]] virtual bool canBringBackClipboard() const { return false; }
  [[nodiscard]] virtual Registration onWayBackChange(std::function<void(bool)> /*handler*/) { return {}; }
  virtual void bringBackClipboard() {}
};

}  // namespace murmel
