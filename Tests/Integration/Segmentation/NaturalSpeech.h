#pragma once

#include "Foundation/Crypto/PrivateMemory.h"

#include <cstdint>
#include <string>
#include <vector>

namespace murmel {

/// Recorded prompts of one speaker, 16 kHz, full scale 1.
struct NaturalSpeech {
  static constexpr double sampleRate = 16'000;
  std::vector<std::vector<float>> prompts;
  std::vector<std::string> transcripts;  ///< of each prompt; empty where it is not known

  enum class Transcripts { ignored, needed };

  /// The prompts of one language of the package asterisk-core-sounds-LANGUAGE-g722 that last at least
  /// `leastSeconds`, at most `most` of them; those with a transcript of plain words only if it is needed.
  /// Fails the test when they are not installed.
  static NaturalSpeech load(const std::string& language, double leastSeconds, std::size_t most,
                            Transcripts transcripts = Transcripts::ignored);
};

/// Prompts in a row with silence between them, and what is known about them.
struct JoinedSpeech {
  struct Gap {
    std::int64_t begin;  ///< first sample of the inserted silence
    std::int64_t end;
  };
  PrivateVector<float> samples;
  std::vector<Gap> gaps;
  /// For each 10 ms whether the clean signal is more than 30 dB below the loudest of its prompt.
  std::vector<bool> quiet;

  static constexpr std::int64_t step = 160;  ///< samples for each element of `quiet`

  /// Gaps of `leastGap` to `mostGap` seconds, chosen by `seed`.
  static JoinedSpeech join(const NaturalSpeech& speech, double leastGap, double mostGap, unsigned seed);
  /// With noise (1/f, as rooms and preamplifiers have) `decibels` below the power of the speech.
  [[nodiscard]] JoinedSpeech withNoise(double decibels, unsigned seed) const;

  /// The length in samples of the quiet stretch that `sample` lies in, 0 inside a word.
  [[nodiscard]] std::int64_t quietAround(std::int64_t sample) const;
  /// Whether the quiet stretch around a gap contains one of the cuts.
  [[nodiscard]] bool isFound(const Gap& gap, const std::vector<std::int64_t>& cuts) const;
};

}  // namespace murmel
