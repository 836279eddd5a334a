#include "Platform/Linux/PulseAudio/SystemSoundWave.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

namespace murmel {

namespace {

/// A sine that dies away while it slides from one pitch to another.
struct Partial {
  double frequency;     // Hz
  double endFrequency;  // Hz
  double amplitude;
  double decay;  // s until it has fallen to 1/e
};

struct Cue {
  double length;  // s
  std::span<const Partial> partials;
};

constexpr double attack = 0.002;    // s; a jump would click
constexpr double release = 0.010;   // s
constexpr double peakLevel = 0.25;  // loud enough beside speech, far from full scale

// The overtones of a struck bar.
constexpr Partial tinkPartials[] = {{1'318.5, 1'318.5, 1.0, 0.050},
                                    {1'318.5 * 2.756, 1'318.5 * 2.756, 0.35, 0.022},
                                    {1'318.5 * 5.404, 1'318.5 * 5.404, 0.12, 0.010}};
// A falling note with a little body.
constexpr Partial popPartials[] = {{587.3, 293.7, 1.0, 0.035}, {1'174.7, 587.3, 0.2, 0.015}};

Cue cueOf(SystemSound sound) {
  return sound == SystemSound::tink ? Cue{0.18, tinkPartials} : Cue{0.12, popPartials};
}

double envelope(double time, double length) {
  return std::min({1.0, time / attack, (length - time) / release});
}

}  // namespace

std::vector<float> systemSoundWave(SystemSound sound, unsigned sampleRate) {
  const auto cue = cueOf(sound);
  double loudest = 0;
  for (const auto& partial : cue.partials) loudest += partial.amplitude;
  std::vector<float> wave(static_cast<std::size_t>(cue.length * sampleRate));
  for (std::size_t index = 0; index < wave.size(); ++index) {
    const double time = static_cast<double>(index) / sampleRate;
    double sum = 0;
    for (const auto& partial : cue.partials) {
      // The phase is the integral of a frequency that changes evenly.
      const double slide = (partial.endFrequency - partial.frequency) / (2 * cue.length);
      const double phase = 2 * std::numbers::pi * (partial.frequency * time + slide * time * time);
      sum += partial.amplitude * std::exp(-time / partial.decay) * std::sin(phase);
    }
    wave[index] = static_cast<float>(sum / loudest * peakLevel * envelope(time, cue.length));
  }
  return wave;
}

}  // namespace murmel
