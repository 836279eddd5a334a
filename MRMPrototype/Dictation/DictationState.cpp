#include "Dictation/DictationState.h"

namespace murmel {

DictationState DictationState::delivered(TextDeliveryResult result) {
  switch (result) {
    case TextDeliveryResult::insertionSent:
      return Case::success;
    case TextDeliveryResult::insertedAndClipboardRestored:
      return Case::insertedAndClipboardRestored;
    case TextDeliveryResult::insertedAndTranscriptKept:
      return Case::insertedAndTranscriptKept;
    case TextDeliveryResult::insertionSentClipboardChanged:
      return Case::insertionSentClipboardChanged;
    case TextDeliveryResult::copiedFallback:
      return Case::copied;
  }
  std::unreachable();
}

std::string DictationState::title() const {
  switch (case_) {
    case Case::error:
    case Case::warning:
      return message_;
    case Case::ready:
      return "Ready";
    case Case::listening:
      return "Listening… release shortcut";
    case Case::listeningBehind:
      return "Listening · recognition is catching up…";
    case Case::transcribing:
      return "Transcribing locally…";
    case Case::success:
      return "Inserted";
    case Case::insertedAndClipboardRestored:
      return "Inserted · clipboard restored";
    case Case::insertedAndTranscriptKept:
      return "Inserted · transcript kept";
    case Case::insertionSentClipboardChanged:
      return "Insertion sent · clipboard changed";
    case Case::copied:
      return "Copied — press ⌘V";
  }
  std::unreachable();
}

}  // namespace murmel
