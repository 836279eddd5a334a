#include "Delivery/LiveDictationDelivery.h"

#include "Foundation/Text/Text.h"

#include <utility>

namespace murmel {

LiveDictationDelivery::LiveDictationDelivery(Clean clean, Insert insert)
    : clean_(std::move(clean)), insert_(std::move(insert)) {}

Task<void> LiveDictationDelivery::append(SpokenText phrase) {
  const std::string cleaned = clean_(std::move(phrase).reveal());
  const auto trimmed = text::trimmed(cleaned);
  if (trimmed.empty()) co_return;

  std::string piece(text_.empty() ? "" : " ");
  piece += trimmed;
  text_ += piece;
  if (!blocked_) {
    auto insertion = insert_(SpokenText(piece));
    const bool inserted = co_await insertion;
    if (inserted) co_return;
    blocked_ = true;
  }
  remaining_ += piece;
}

}  // namespace murmel
