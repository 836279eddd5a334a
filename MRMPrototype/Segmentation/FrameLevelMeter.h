#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace murmel {

/// How loud one frame of a recording is.
struct FrameLevel {
  double db = 0;             ///< dBFS above 120 Hz, never below `FrameLevelMeter::silenceDB`
  double meanSquare = 0;     ///< of the samples as they came, full scale 1
  bool digitalZero = false;  ///< every sample is exactly zero, as no sound is

  friend bool operator==(const FrameLevel&, const FrameLevel&) = default;
};

/// Measures a stream of samples frame by frame, at any sample rate. What is below speech (hum, rumble, a
/// constant offset) is filtered out first. How the samples are cut into batches makes no difference.
class FrameLevelMeter {
 public:
  /// Seconds.
  static constexpr double frameSeconds = 0.02;
  /// What a frame without any power measures, in dB: the least that 16-bit samples can carry.
  static constexpr double silenceDB = -90;
  /// How many frames come closest to so many seconds, which are not below zero.
  static std::size_t framesIn(double seconds) {
    return static_cast<std::size_t>(std::lround(seconds / frameSeconds));
  }

  /// `sampleRate` in Hz, above zero.
  explicit FrameLevelMeter(double sampleRate);

  /// The frames that `samples` complete.
  std::vector<FrameLevel> append(std::span<const float> samples);

  /// The first sample of frame `index`, counted from the start of the stream.
  [[nodiscard]] std::int64_t firstSample(std::size_t index) const;
  /// The frame that sample `sample` lies in.
  [[nodiscard]] std::size_t frameOf(std::int64_t sample) const;

 private:
  /// A high-pass filter of second order (Butterworth), direct form II transposed.
  struct HighPass {
    double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
    double z1 = 0, z2 = 0;
    double operator()(double sample);
  };
  static HighPass highPass(double sampleRate);

  double samplesPerFrame_;
  HighPass filter_;
  std::int64_t position_ = 0;
  std::size_t frame_ = 0;
  std::int64_t frameEnd_;
  std::int64_t frameStart_ = 0;
  double filteredSquares_ = 0;
  double squares_ = 0;
};

}  // namespace murmel
