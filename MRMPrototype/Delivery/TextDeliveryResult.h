#pragma once

namespace murmel {

/// How one delivery ended.
enum class TextDeliveryResult {
  insertionSent,                  ///< pasted; a restore of the previous clipboard is pending
  insertedAndClipboardRestored,   ///< pasted, and the previous clipboard is back
  insertedAndTranscriptKept,      ///< pasted; the transcript stays on the clipboard by the user's choice
  insertionSentClipboardChanged,  ///< pasted; somebody else wrote to the clipboard, which is left alone
  copiedFallback,                 ///< not pasted; the text is on the clipboard
};

}  // namespace murmel
