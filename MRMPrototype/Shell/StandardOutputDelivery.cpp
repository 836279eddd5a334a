#include "Shell/StandardOutputDelivery.h"

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
  print_(phrase.reveal());
  co_return true;
}

std::optional<TextDeliveryResult> StandardOutputDelivery::lastResult() const {
  return TextDeliveryResult::insertedAndTranscriptKept;
}

void StandardOutputDelivery::writePrivateText(const SpokenText& text) {
  print_(text.reveal());
}

}  // namespace murmel
