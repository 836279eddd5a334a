#include "Delivery/ReplacedClipboard.h"

#include <utility>

namespace murmel {

ReplacedClipboard::ReplacedClipboard(Executor& executor, ClipboardPasteboard& pasteboard)
    : executor_(executor),
      pasteboard_(pasteboard),
      changes_(pasteboard.onForeignChange([this](std::int64_t /*changeCount*/) { withdraw(); })) {}

void ReplacedClipboard::offer(SharedSnapshot contents, std::int64_t changeCount) {
  withdraw();
  if (contents->isEmpty()) return;
  offered_.emplace(std::move(contents), changeCount, executor_.after(retention, [this] { withdraw(); }));
  availability_.emit(true);
}

void ReplacedClipboard::withdraw() {
  // The timer that brought us here ends with what it belongs to.
  const auto withdrawn = std::exchange(offered_, std::nullopt);
  if (withdrawn) availability_.emit(false);
}

Task<bool> ReplacedClipboard::bringBack() {
  if (!offered_) co_return false;
  const auto count = offered_->changeCount;
  auto replacing = pasteboard_.mrmReplaceIfUnchanged(offered_->contents, count);
  const auto replaced = co_await replacing;
  // A clipboard that does not take it now may do so later.
  if (replaced && offered_ && offered_->changeCount == count) withdraw();
  co_return replaced.has_value();
}

}  // namespace murmel
