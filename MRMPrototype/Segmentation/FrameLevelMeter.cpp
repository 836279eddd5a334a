#include "Segmentation/FrameLevelMeter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace murmel {

namespace {

constexpr double highPassHertz = 120;
/// A filter whose corner is above this part of the sample rate does more harm than good.
constexpr double highestCorner = 0.4;
/// 10·log10 of it is `silenceDB`.
constexpr double leastMeanSquare = 1e-9;

}  // namespace

double FrameLevelMeter::HighPass::operator()(double sample) {
  const double out = b0 * sample + z1;
  z1 = b1 * sample - a1 * out + z2;
  z2 = b2 * sample - a2 * out;
  return out;
}

FrameLevelMeter::HighPass FrameLevelMeter::highPass(double sampleRate) {
  if (highPassHertz > highestCorner * sampleRate) return {};
  const double omega = 2 * std::numbers::pi * highPassHertz / sampleRate;
  const double cosine = std::cos(omega);
  const double alpha = std::sin(omega) / std::numbers::sqrt2;
  const double a0 = 1 + alpha;
  HighPass filter;
  filter.b0 = filter.b2 = (1 + cosine) / 2 / a0;
  filter.b1 = -(1 + cosine) / a0;
  filter.a1 = -2 * cosine / a0;
  filter.a2 = (1 - alpha) / a0;
  return filter;
}

FrameLevelMeter::FrameLevelMeter(double sampleRate)
    : samplesPerFrame_(std::max(1.0, sampleRate * frameSeconds)),
      filter_(highPass(sampleRate)),
      frameEnd_(firstSample(1)) {}

std::int64_t FrameLevelMeter::firstSample(std::size_t index) const {
  return std::llround(static_cast<double>(index) * samplesPerFrame_);
}

std::size_t FrameLevelMeter::frameOf(std::int64_t sample) const {
  auto index = static_cast<std::size_t>(static_cast<double>(sample) / samplesPerFrame_);
  while (firstSample(index) > sample) --index;
  while (firstSample(index + 1) <= sample) ++index;
  return index;
}

std::vector<FrameLevel> FrameLevelMeter::append(std::span<const float> samples) {
  std::vector<FrameLevel> frames;
  for (const float sample : samples) {
    const double filtered = filter_(sample);
    filteredSquares_ += filtered * filtered;
    squares_ += static_cast<double>(sample) * static_cast<double>(sample);
    if (++position_ < frameEnd_) continue;
    const auto count = static_cast<double>(frameEnd_ - frameStart_);
    frames.push_back(
        {10 * std::log10(filteredSquares_ / count + leastMeanSquare), squares_ / count, squares_ == 0});
    filteredSquares_ = squares_ = 0;
    ++frame_;
    frameStart_ = frameEnd_;
    frameEnd_ = firstSample(frame_ + 1);
  }
  return frames;
}

}  // namespace murmel
