#include "Workers/SpeechWorker/QuietCut.h"

#include "Segmentation/SegmentLevels.h"

#include <algorithm>
#include <cstddef>

namespace murmel::worker {

namespace {

/// Below a tenth of a second there is no word, and the recognisers want a few frames.
constexpr std::size_t fewestSamples = 1'600;

constexpr double samplesPerSecond = 16'000;

std::size_t samplesIn(double seconds) {
  return static_cast<std::size_t>(seconds * samplesPerSecond);
}

std::vector<FrameLevel> levelsOf(std::span<const std::int16_t> samples, FrameLevelMeter& meter) {
  std::vector<float> scaled(samples.size());
  std::ranges::transform(samples, scaled.begin(),
                         [](auto sample) { return static_cast<float>(sample) / 32'768; });
  return meter.append(scaled);
}

/// Not digital silence, steady noise or a hum: in these recognisers hear words, each in its own way.
bool isWorthHearing(std::span<const std::int16_t> samples) {
  if (samples.size() < fewestSamples) return false;
  FrameLevelMeter meter(samplesPerSecond);
  return speechEvidence(levelsOf(samples, meter)) != SpeechEvidence::none;
}

}  // namespace

std::size_t quietestSample(std::span<const std::int16_t> samples) {
  FrameLevelMeter meter(samplesPerSecond);
  const auto levels = levelsOf(samples, meter);
  if (levels.empty()) return samples.size() / 2;
  return static_cast<std::size_t>(meter.firstSample(quietestPlace(levels).frame));
}

std::vector<std::span<const std::int16_t>> cutAtQuietPlaces(std::span<const std::int16_t> samples,
                                                            const QuietCutLimits& limits) {
  std::vector<std::span<const std::int16_t>> pieces;
  const auto earliest = samplesIn(limits.earliest);
  while (samples.size() > samplesIn(limits.longest)) {
    const auto latest = std::min(samplesIn(limits.longest), samples.size() - samplesIn(limits.shortestLast));
    const auto cut = earliest + quietestSample(samples.subspan(earliest, latest - earliest));
    pieces.push_back(samples.first(cut));
    samples = samples.subspan(cut);
  }
  pieces.push_back(samples);
  return pieces;
}

std::expected<std::string, std::string> inPieces(
    std::span<const std::int16_t> samples, const QuietCutLimits& limits,
    const std::function<std::expected<std::string, std::string>(std::span<const std::int16_t>)>& recognise) {
  std::string text;
  for (const auto piece : cutAtQuietPlaces(samples, limits)) {
    if (!isWorthHearing(piece)) continue;
    const auto words = recognise(piece);
    if (!words) return words;
    if (words->empty()) continue;
    if (!text.empty()) text += ' ';
    text += *words;
  }
  return text;
}

}  // namespace murmel::worker
