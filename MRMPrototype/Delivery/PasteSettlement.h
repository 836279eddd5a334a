#pragma once

#include "Delivery/TextDeliveryResult.h"

#include <optional>
#include <string>

namespace murmel {

/// How a paste that was sent turned out in the end.
enum class PasteSettlement {
  clipboardRestored,  ///< the target read the text, and the previous clipboard is back
  transcriptKept,     ///< the target read the text, which stays on the clipboard by the user's choice
  clipboardChanged,   ///< somebody wrote to the clipboard, which is left alone
  neverRead,          ///< the target did not read the text, which stays on the clipboard for a paste by hand
};

/// The delivery's final result.
constexpr TextDeliveryResult deliveryResult(PasteSettlement settlement) {
  switch (settlement) {
    case PasteSettlement::clipboardRestored:
      return TextDeliveryResult::insertedAndClipboardRestored;
    case PasteSettlement::transcriptKept:
      return TextDeliveryResult::insertedAndTranscriptKept;
    case PasteSettlement::clipboardChanged:
      return TextDeliveryResult::insertionSentClipboardChanged;
    case PasteSettlement::neverRead:
      break;
  }
  return TextDeliveryResult::copiedFallback;
}

/// What the user must be told, if anything.
inline std::optional<std::string> warning(PasteSettlement settlement) {
  if (settlement != PasteSettlement::neverRead) return std::nullopt;
  return "The application did not take the text. Copied — press ⌘V.";
}

}  // namespace murmel
