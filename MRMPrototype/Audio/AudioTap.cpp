#include "Audio/AudioTap.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace murmel {

namespace {

// Appending must rarely reallocate: a minute at the start, two seconds after each hand-over, which comes once
// a second.
constexpr double secondsReservedAtStart = 60;
constexpr double secondsReservedAfterHandOver = 2;
// The rate of a recording is known with its first fragment. Room for the usual one is made before that, on
// the main thread; pages that are never written cost nothing.
constexpr double usualSampleRate = 48'000;
// Converters reach it from below: -0.01 dBFS.
constexpr float clippedFrom = 0.999F;
// Spreads the levels of speech over the meter.
constexpr double levelGain = 2.2;

std::size_t samplesIn(double seconds, double sampleRate) {
  return static_cast<std::size_t>(seconds * sampleRate);
}

}  // namespace

void AudioTap::reset() {
  const std::lock_guard guard(lock_);
  captureState_.capturedSamples.clear();
  captureState_.capturedSamples.reserve(samplesIn(secondsReservedAtStart, usualSampleRate));
  captureState_.sampleRate = 0;
  captureState_.currentLevel = 0;
  captureState_.figures = {};
}

bool AudioTap::append(std::span<const float> interleaved, AudioFormat format) {
  if (format.channelCount == 0 || !(format.sampleRate > 0)) return true;
  const std::size_t channels = format.channelCount;
  const auto frames = interleaved.size() / channels;
  if (frames == 0) return true;
  {
    const std::lock_guard guard(lock_);
    if (captureState_.sampleRate == 0) {
      captureState_.sampleRate = format.sampleRate;
      captureState_.capturedSamples.reserve(samplesIn(secondsReservedAtStart, format.sampleRate));
    }
    if (captureState_.sampleRate != format.sampleRate) return false;
  }
  const auto divisor = static_cast<float>(channels);
  double sumOfSquares = 0;
  CaptureFigures figures{.frames = frames, .sampleRate = format.sampleRate};
  const float* next = interleaved.data();
  for (std::size_t done = 0; done < frames;) {
    const auto chunk = std::min(frames - done, scratchFrames);
    for (std::size_t frame = 0; frame < chunk; ++frame) {
      float sum = 0;
      for (std::size_t channel = 0; channel < channels; ++channel) sum += *next++;
      const float mixed = sum / divisor;
      const float mono = std::isfinite(mixed) ? mixed : 0.0F;
      monoScratch_[frame] = mono;
      const float magnitude = std::abs(mono);
      figures.peak = std::max(figures.peak, magnitude);
      figures.clippedFrames += static_cast<std::uint64_t>(magnitude >= clippedFrom);
      figures.trailingZeros = magnitude > 0 ? 0 : figures.trailingZeros + 1;
      sumOfSquares += static_cast<double>(mono) * static_cast<double>(mono);
    }
    {
      const std::lock_guard guard(lock_);
      auto& samples = captureState_.capturedSamples;
      samples.insert(samples.end(), monoScratch_.begin(),
                     monoScratch_.begin() + static_cast<std::ptrdiff_t>(chunk));
    }
    done += chunk;
  }
  const double level = std::sqrt(std::sqrt(sumOfSquares / static_cast<double>(frames))) * levelGain;
  const std::lock_guard guard(lock_);
  captureState_.currentLevel = static_cast<float>(std::clamp(level, 0.0, 1.0));
  auto& sum = captureState_.figures;
  figures.trailingZeros += figures.trailingZeros == frames ? sum.trailingZeros : 0;
  figures.frames += sum.frames;
  figures.clippedFrames += sum.clippedFrames;
  figures.peak = std::max(figures.peak, sum.peak);
  sum = figures;
  return true;
}

CaptureFigures AudioTap::takeFigures() {
  const std::lock_guard guard(lock_);
  return std::exchange(captureState_.figures, {});
}

std::optional<PendingCapturedAudio> AudioTap::takePending() {
  double sampleRate = 0;
  {
    const std::lock_guard guard(lock_);
    sampleRate = captureState_.sampleRate;
  }
  if (!(sampleRate > 0)) return std::nullopt;
  PrivateVector<float> taken;
  taken.reserve(samplesIn(secondsReservedAfterHandOver, sampleRate));
  {
    const std::lock_guard guard(lock_);
    if (captureState_.capturedSamples.empty()) return std::nullopt;
    taken.swap(captureState_.capturedSamples);
  }
  return PendingCapturedAudio{std::move(taken), sampleRate};
}

std::optional<PendingCapturedAudio> AudioTap::finish() {
  const std::lock_guard guard(lock_);
  captureState_.currentLevel = 0;
  if (!(captureState_.sampleRate > 0)) return std::nullopt;
  return PendingCapturedAudio{std::exchange(captureState_.capturedSamples, {}), captureState_.sampleRate};
}

void AudioTap::discard() {
  const std::lock_guard guard(lock_);
  captureState_.capturedSamples.clear();
  captureState_.currentLevel = 0;
}

double AudioTap::sampleRate() const {
  const std::lock_guard guard(lock_);
  return captureState_.sampleRate;
}

float AudioTap::level() const {
  const std::lock_guard guard(lock_);
  return captureState_.currentLevel;
}

}  // namespace murmel
