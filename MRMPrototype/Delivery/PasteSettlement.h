#pragma once

#include "Delivery/TextDeliveryResult.h"
#include "Foundation/RawValue.h"

#include <optional>
#include <string>

namespace murmel {

/// How a paste that was sent turned out in the end.
enum class PasteSettlement {
  clipboardRestored,  ///< the target read the text, and the previous clipboard is back
  transcriptKept,     ///< the target read the text, which stays on the clipboard by the user's choice
  clipboardChanged,   ///< the target read the text, then somebody wrote to the clipboard, which is left alone
  replacedUnread,  ///< somebody wrote to the clipboard before the target read the text, which is nowhere now
  noField,         ///< the target read the text, but told that no field had the keyboard; the text stays
  neverRead,       ///< the target did not read the text, which stays on the clipboard for a paste by hand
};

/// The raw values are the words of the diagnostic log.
template <>
inline constexpr auto rawValueTable<PasteSettlement> = std::to_array<RawValueRow<PasteSettlement>>({
    {PasteSettlement::clipboardRestored, "clipboard_restored"},
    {PasteSettlement::transcriptKept, "transcript_kept"},
    {PasteSettlement::clipboardChanged, "clipboard_changed"},
    {PasteSettlement::replacedUnread, "replaced_unread"},
    {PasteSettlement::noField, "no_field"},
    {PasteSettlement::neverRead, "never_read"},
});

/// The delivery's final result.
constexpr TextDeliveryResult deliveryResult(PasteSettlement settlement) {
  switch (settlement) {
    case PasteSettlement::clipboardRestored:
      return TextDeliveryResult::insertedAndClipboardRestored;
    case PasteSettlement::transcriptKept:
      return TextDeliveryResult::insertedAndTranscriptKept;
    case PasteSettlement::clipboardChanged:
    case PasteSettlement::replacedUnread:
      return TextDeliveryResult::insertionSentClipboardChanged;
    case PasteSettlement::noField:
    case PasteSettlement::neverRead:
      break;
  }
  return TextDeliveryResult::copiedFallback;
}

/// Whether the target has the text, as far as anybody can tell.
constexpr bool hasArrived(PasteSettlement settlement) {
  return settlement == PasteSettlement::clipboardRestored || settlement == PasteSettlement::transcriptKept ||
         settlement == PasteSettlement::clipboardChanged;
}

/// What the user must be told, if anything.
inline std::optional<std::string> warning(PasteSettlement settlement) {
  switch (settlement) {
    case PasteSettlement::neverRead:
      return "The application did not take the text. Copied — press ⌘V.";
    case PasteSettlement::noField:
      return "No text field had the keyboard. Copied — press ⌘V.";
    case PasteSettlement::replacedUnread:
      return "Something else was copied before the application took the text. Choose Copy Last Dictation.";
    case PasteSettlement::clipboardRestored:
    case PasteSettlement::transcriptKept:
    case PasteSettlement::clipboardChanged:
      break;
  }
  return std::nullopt;
}

}  // namespace murmel
