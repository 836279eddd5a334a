#include "Delivery/TargetReads.h"

namespace murmel {

void TargetReads::follow(ClipboardPasteboard& pasteboard, std::int64_t changeCount) {
  subscriptions_.push_back(pasteboard.onRead([this, changeCount](const ClipboardRead& read) {
    if (!read.isText || read.changeCount != changeCount || !isSameProgram(read.reader, target_)) return;
    times_.push_back(read.at);
    if (onRead_) onRead_(read.at);
  }));
}

}  // namespace murmel
