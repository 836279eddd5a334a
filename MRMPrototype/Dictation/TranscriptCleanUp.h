#pragma once

#include <string>

namespace murmel {

/// The word-level clean-up of recognised text: filler words and personal vocabulary, as the settings of the
/// moment ask for. Main thread.
class TranscriptCleanUp {
 public:
  virtual ~TranscriptCleanUp() = default;
  [[nodiscard]] virtual std::string clean(std::string text) = 0;
};

}  // namespace murmel
