#include "Delivery/TargetReads.h"

namespace murmel {

void TargetReads::follow(ClipboardPasteboard& pasteboard, std::int64_t changeCount) {
  subscriptions_.push_back(pasteboard.onRead([this, changeCount](const ClipboardRead& read) {
    if (read.changeCount != changeCount) return;
    if (read.kind == ClipboardRead::Kind::refused) ++refused_;
    if (!isSameProgram(read.reader, target_)) return;
    if (read.kind == ClipboardRead::Kind::text) times_.push_back(read.at);
    lastAsked_ = read.at;
    // The one who is told may replace or remove the handler.
    if (const auto onAsked = onAsked_) onAsked();
  }));
}

}  // namespace murmel
