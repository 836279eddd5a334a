#pragma once

#include "Audio/CapturedAudio.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <vector>

namespace murmel {

/// A recording put together from speech-like sound, noise and silence. Its noise makes every stretch unlike
/// every other. Levels in dBFS.
class SoundTape {
 public:
  explicit SoundTape(double rate = recognitionSampleRate, unsigned seed = 1) : rate_(rate), random_(seed) {}

  /// Noise in syllables: 200 ms loud, then softer by 12 dB for 60 ms.
  SoundTape& speech(double seconds, double db = -20) {
    return add(seconds, [&](double time) {
      const bool loud = std::fmod(time, 0.26) < 0.2;
      return white(loud ? db : db - 12);
    });
  }
  SoundTape& noise(double seconds, double db = -60) {
    return add(seconds, [&](double) { return white(db); });
  }
  SoundTape& zeros(double seconds) {
    return add(seconds, [](double) { return 0.0; });
  }
  SoundTape& hum(double seconds, double hertz, double db) {
    return add(seconds, [&](double time) {
      double sum = 0;
      for (const int harmonic : {1, 2, 3, 5}) sum += std::sin(2 * std::numbers::pi * hertz * harmonic * time);
      return sum * amplitude(db) / 2 + white(db - 40);
    });
  }
  /// Notes with a sharp attack that fade, four a second.
  SoundTape& music(double seconds, double db) {
    return add(seconds, [&](double time) {
      const double note = 220 * std::pow(2, std::fmod(std::floor(time * 4) * 7, 12) / 12);
      return amplitude(db) * std::exp(-6 * std::fmod(time, 0.25)) *
             std::sin(2 * std::numbers::pi * note * time);
    });
  }
  SoundTape& clipped(double limit) {
    for (auto& sample : samples_)
      sample = std::clamp(sample, -static_cast<float>(limit), static_cast<float>(limit));
    return *this;
  }

  [[nodiscard]] const PrivateVector<float>& samples() const { return samples_; }
  [[nodiscard]] PendingCapturedAudio audio() const { return {samples_, rate_}; }
  [[nodiscard]] double seconds() const { return static_cast<double>(samples_.size()) / rate_; }

 private:
  static double amplitude(double db) { return std::pow(10, db / 20); }
  double white(double db) { return amplitude(db) * std::numbers::sqrt3 * uniform_(random_); }

  template <class Sound>
  SoundTape& add(double seconds, Sound sound) {
    const auto count = static_cast<std::size_t>(std::lround(seconds * rate_));
    for (std::size_t index = 0; index < count; ++index)
      samples_.push_back(static_cast<float>(sound(static_cast<double>(index) / rate_)));
    return *this;
  }

  double rate_;
  std::mt19937 random_;
  std::uniform_real_distribution<double> uniform_{-1, 1};
  PrivateVector<float> samples_;
};

}  // namespace murmel
