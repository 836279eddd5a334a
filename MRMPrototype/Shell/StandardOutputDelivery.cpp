#include "Shell/StandardOutputDelivery.h"

#include "Foundation/Text/Text.h"

#include <utility>

namespace murmel {

StandardOutputDelivery::StandardOutputDelivery(std::function<void(const std::string&)> print)
    : print_(std::move(print)) {}

Task<std::optional<TextDeliveryResult>> StandardOutputDelivery::finishPasteCleanup() {
  co_return std::nullopt;
}

Task<TextDeliveryResult> StandardOutputDelivery::insertOrCopy(SpokenText text, bool /*liveOnly*/) {
  print_(text.reveal());
  co_return TextDeliveryResult::insertedAndTranscriptKept;
}

Task<bool> StandardOutputDelivery::insertLiveSegment(SpokenText phrase) {
  // The space that parts it from the phrase before is for an editor; here each phrase is a line.
  print_(std::string(text::trimmed(phrase.reveal())));
  co_return true;
}

std::optional<TextDeliveryResult> StandardOutputDelivery::lastResult() const {
  return TextDeliveryResult::insertedAndTranscriptKept;
}

void StandardOutputDelivery::writePrivateText(const SpokenText& text) {
  print_(text.reveal());
}

}  // namespace murmel
