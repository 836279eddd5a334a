#include "Dictation/LastTranscriptBuffer.h"

#include <utility>

namespace murmel {

LastTranscriptBuffer::LastTranscriptBuffer(Executor& executor, Duration retention)
    : executor_(executor), retention_(retention) {}

void LastTranscriptBuffer::replace(SpokenText text) {
  clear();
  text_ = std::move(text);
  const auto generation = ++generation_;
  announce(true);
  expiry_ = executor_.after(retention_, [this, generation] {
    if (generation == generation_) clear();
  });
}

void LastTranscriptBuffer::clear() {
  expiry_.reset();
  text_.reset();
  announce(false);
}

void LastTranscriptBuffer::announce(bool available) const {
  if (onAvailabilityChange_) onAvailabilityChange_(available);
}

}  // namespace murmel
