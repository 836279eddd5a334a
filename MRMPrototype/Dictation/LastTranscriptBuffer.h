#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/SpokenText.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace murmel {

/// Keeps the last dictation for a while, so that it can be copied again. Main thread.
class LastTranscriptBuffer {
 public:
  LastTranscriptBuffer(Executor& executor, Duration retention);

  /// Keeps `text` for the retention time, in place of any earlier one.
  void replace(SpokenText text);
  void clear();
  [[nodiscard]] const std::optional<SpokenText>& text() const { return text_; }

  /// Told true when a text is there, false when it is gone.
  void onAvailabilityChange(std::function<void(bool)> handler) { onAvailabilityChange_ = std::move(handler); }

 private:
  void announce(bool available) const;

  Executor& executor_;
  Duration retention_;
  std::optional<SpokenText> text_;
  std::uint64_t generation_ = 0;
  Registration expiry_;
  std::function<void(bool)> onAvailabilityChange_;
};

}  // namespace murmel
