#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace murmel::worker {

/// What is said about the speech beforehand.
struct SpeechHints {
  std::optional<std::string> language;  ///< a code that forces the language
  std::vector<std::string> words;       ///< names that may occur; most engines take none
};

/// What turns speech into words, whatever its model.
class SpeechEngine {
 public:
  virtual ~SpeechEngine() = default;
  /// `samples` are mono at 16 kHz. Empty text means that there was no speech; the error is a short reason for
  /// the user. UTF-8.
  virtual std::expected<std::string, std::string> recognise(std::span<const std::int16_t> samples,
                                                            const SpeechHints& hints) = 0;
  /// Gives up what is left of the last recording and of its words, as far as the engine's library lets it.
  virtual void forget() = 0;
};

}  // namespace murmel::worker
