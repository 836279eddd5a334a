#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace murmel::worker {

/// How much of its window the encoder looks at, in its own steps of 20 ms; 0 for all 30 s. The whole window
/// costs four times what a sentence needs; too little of it makes the decoder say things twice.
int whisperWindow(std::size_t samples);

/// More tokens than speech of this length has in any language written with an alphabet. The library has no
/// room for more than 220.
int whisperTokenLimit(std::size_t samples);

/// What a text of few tokens leaves out of the speech that it was heard in: the model ends its text now and
/// then when a sentence ends, whatever comes after, and writes once what was said twice.
class WhisperOmission {
 public:
  /// `samples` at 16 kHz, mono.
  explicit WhisperOmission(std::span<const std::int16_t> samples);

  /// Whether so few tokens are a reason to look; people who speak slowly have as few.
  [[nodiscard]] bool isPossible(int tokens) const;
  /// Whether enough is said after that sample for a sentence.
  [[nodiscard]] bool isAfter(std::size_t sample) const;
  /// Whether there are fewer tokens than speech of that length has in any language, or two halves of speech
  /// that are as long as each other.
  [[nodiscard]] bool isInside(int tokens) const;

 private:
  [[nodiscard]] double secondsFrom(std::size_t step) const;

  std::vector<bool> spoken_;  ///< in steps of 20 ms
};

/// Where text begins to say again what it has just said, as a model does that has lost its way: three or more
/// words twice in a row, or one or two words four times; npos when it does not. The same letters over and
/// over are nothing that anybody has said even once: of these, where they begin.
std::size_t repetitionIn(std::string_view text);

/// Whether the text says at its end again and again what it has said: more than three times the same, or the
/// same letters over and over. Nobody does.
bool isLooping(std::string_view text);

/// Without blanks around it; empty when it only describes sounds: "[BLANK_AUDIO]", "(wind blowing)",
/// "*music*", "♪".
std::string withoutSoundDescriptions(std::string_view text);

}  // namespace murmel::worker
