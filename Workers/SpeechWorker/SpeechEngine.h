#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>

namespace murmel::worker {

/// What turns speech into words, whatever its model.
class SpeechEngine {
 public:
  virtual ~SpeechEngine() = default;
  /// `samples` are mono at 16 kHz; `language` a two-letter hint. Empty text means that there was no speech;
  /// the error is a short reason for the user. UTF-8.
  virtual std::expected<std::string, std::string> recognise(std::span<const std::int16_t> samples,
                                                            const std::optional<std::string>& language) = 0;
};

}  // namespace murmel::worker
