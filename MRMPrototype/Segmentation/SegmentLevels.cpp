#include "Segmentation/SegmentLevels.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace murmel {

namespace {

/// Steady noise stays within 2 dB of its quietest tenth; words stand out by more than 5 dB even when they are
/// no louder than the noise.
constexpr double steadyDB = 4.5;
constexpr double clearDB = 10;
constexpr double noisePercentile = 0.1;
constexpr std::size_t loudestFrames = 4;  // 80 ms, longer than a click
constexpr std::size_t clearFrames = 15;   // 300 ms, a short word
constexpr std::size_t fewestFrames = 10;  // less than 200 ms cannot be judged

constexpr std::size_t quietFrames = 25;  // 500 ms
constexpr double cutWithinQuiet = 0.65;
/// The frames of a pause are as loud as each other.
constexpr double evenDB = 5;
constexpr std::size_t momentFrames = 5;  // 100 ms

std::vector<double> smoothedLevels(std::span<const FrameLevel> frames) {
  std::vector<double> levels;
  levels.reserve(frames.size());
  for (const auto& frame : frames)
    if (!frame.digitalZero) levels.push_back(frame.db);
  // In place, from the end: each becomes the mean of itself and the two before it.
  for (auto index = levels.size(); index-- > 2;)
    levels[index] = (levels[index] + levels[index - 1] + levels[index - 2]) / 3;
  if (levels.size() > 2) levels.erase(levels.begin(), levels.begin() + 2);
  return levels;
}

/// Where `length` frames in a row have the least sum of levels, and their mean. Of several that are alike the
/// last: whoever waits for the cut wants as much before it as possible.
std::pair<std::size_t, double> quietestRun(std::span<const FrameLevel> frames, std::size_t length) {
  double sum = 0;
  for (std::size_t index = 0; index < length; ++index) sum += frames[index].db;
  double least = sum;
  std::size_t best = 0;
  for (std::size_t index = length; index < frames.size(); ++index) {
    sum += frames[index].db - frames[index - length].db;
    if (sum > least) continue;
    least = sum;
    best = index - length + 1;
  }
  return {best, least / static_cast<double>(length)};
}

}  // namespace

SpeechEvidence speechEvidence(std::span<const FrameLevel> frames) {
  auto levels = smoothedLevels(frames);
  if (levels.empty()) return SpeechEvidence::none;
  const auto sounding = std::ranges::count(frames, false, &FrameLevel::digitalZero);
  if (frames.size() >= fewestFrames && sounding < static_cast<std::ptrdiff_t>(loudestFrames))
    return SpeechEvidence::none;
  if (levels.size() < fewestFrames) return SpeechEvidence::doubtful;
  std::ranges::sort(levels);
  const double noise = levels[static_cast<std::size_t>(noisePercentile * static_cast<double>(levels.size()))];
  if (levels[levels.size() - loudestFrames] - noise < steadyDB) return SpeechEvidence::none;
  const auto standingOut = std::ranges::end(levels) - std::ranges::lower_bound(levels, noise + clearDB);
  return standingOut >= static_cast<std::ptrdiff_t>(clearFrames) ? SpeechEvidence::clear
                                                                 : SpeechEvidence::doubtful;
}

QuietestPlace quietestPlace(std::span<const FrameLevel> frames) {
  const auto length = std::min(quietFrames, frames.size());
  const auto [begin, mean] = quietestRun(frames, length);
  const auto run = frames.subspan(begin, length);
  const double loudest = std::ranges::max(run, {}, &FrameLevel::db).db;
  if (loudest <= mean + evenDB)
    return {begin + static_cast<std::size_t>(cutWithinQuiet * static_cast<double>(length)), true};
  // Somebody speaks in it: only its quietest moment will do.
  const auto moment = std::min(momentFrames, length);
  return {begin + quietestRun(run, moment).first + moment / 2, false};
}

}  // namespace murmel
