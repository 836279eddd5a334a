#pragma once

#include "Audio/CapturedAudio.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace murmel {

/// A second of three vowels: a buzz of 120 Hz whose harmonics are strongest near the two lowest formants of
/// each.
inline CapturedAudio syntheticSpeech() {
  struct Vowel {
    double first, second;  // Hz
  };
  constexpr std::array vowels{Vowel{730, 1'090}, Vowel{270, 2'290}, Vowel{300, 870}};
  constexpr double pitch = 120;
  constexpr int harmonics = 24;
  constexpr double width = 120;
  constexpr double loudness = 6'000;
  CapturedAudio audio;
  for (int index = 0; index < recognitionSampleRate; ++index) {
    const double time = static_cast<double>(index) / recognitionSampleRate;
    const double place = time * static_cast<double>(vowels.size());
    const auto& vowel = vowels[static_cast<std::size_t>(place)];
    const double envelope = std::sin(std::numbers::pi * (place - std::floor(place)));
    double value = 0;
    for (int harmonic = 1; harmonic <= harmonics; ++harmonic) {
      const double frequency = pitch * harmonic;
      const double nearness = std::exp(-std::abs(frequency - vowel.first) / width) +
                              std::exp(-std::abs(frequency - vowel.second) / width) / 2;
      value += nearness * std::sin(2 * std::numbers::pi * frequency * time);
    }
    const auto sample = static_cast<std::int16_t>(loudness * envelope * value);
    audio.pcm16LE.push_back(static_cast<std::uint8_t>(sample & 0xFF));
    audio.pcm16LE.push_back(static_cast<std::uint8_t>((sample >> 8) & 0xFF));
  }
  return audio;
}

}  // namespace murmel
