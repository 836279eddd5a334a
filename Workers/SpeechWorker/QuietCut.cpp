#include "Workers/SpeechWorker/QuietCut.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace murmel::worker {

namespace {

/// Below a tenth of a second there is no word, and the recognisers want a few frames.
constexpr std::size_t fewestSamples = 1'600;

constexpr double sampleRate = 16'000;
constexpr std::size_t frameSize = 320;   // 20 ms
constexpr std::size_t quietFrames = 10;  // 200 ms: shorter dips are inside words

std::size_t samplesIn(double seconds) {
  return static_cast<std::size_t>(seconds * sampleRate);
}

std::vector<double> frameEnergies(std::span<const std::int16_t> samples) {
  std::vector<double> energies(samples.size() / frameSize);
  for (std::size_t frame = 0; frame < energies.size(); ++frame) {
    double energy = 0;
    for (const auto sample : samples.subspan(frame * frameSize, frameSize))
      energy += static_cast<double>(sample) * static_cast<double>(sample);
    energies[frame] = energy;
  }
  return energies;
}

/// The middle of the quietest stretch of `samples`, as an offset.
std::size_t quietestPlace(std::span<const std::int16_t> samples) {
  const auto energies = frameEnergies(samples);
  if (energies.size() <= quietFrames) return samples.size() / 2;
  double window = 0;
  for (std::size_t frame = 0; frame < quietFrames; ++frame) window += energies[frame];
  double least = window;
  std::size_t best = 0;
  for (std::size_t first = 1; first + quietFrames <= energies.size(); ++first) {
    window += energies[first + quietFrames - 1] - energies[first - 1];
    if (window < least) {
      least = window;
      best = first;
    }
  }
  return (best + quietFrames / 2) * frameSize;
}

}  // namespace

std::vector<std::span<const std::int16_t>> cutAtQuietPlaces(std::span<const std::int16_t> samples,
                                                            const QuietCutLimits& limits) {
  std::vector<std::span<const std::int16_t>> pieces;
  const auto earliest = samplesIn(limits.earliest);
  while (samples.size() > samplesIn(limits.longest)) {
    const auto latest = std::min(samplesIn(limits.longest), samples.size() - samplesIn(limits.shortestLast));
    const auto cut = earliest + quietestPlace(samples.subspan(earliest, latest - earliest));
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
    if (piece.size() < fewestSamples) continue;
    const auto words = recognise(piece);
    if (!words) return words;
    if (words->empty()) continue;
    if (!text.empty()) text += ' ';
    text += *words;
  }
  return text;
}

}  // namespace murmel::worker
