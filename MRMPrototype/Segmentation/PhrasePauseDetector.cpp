#include "Segmentation/PhrasePauseDetector.h"

#include <algorithm>
#include <cmath>

namespace murmel {

namespace {

int frames(double seconds) {
  return static_cast<int>(FrameLevelMeter::framesIn(seconds));
}

constexpr std::size_t smoothedFrames = 3;

const std::size_t calibrationFrames = FrameLevelMeter::framesIn(0.3);
/// Whoever speaks at once calibrates the noise with speech; no room is louder than this, so the estimate
/// starts here at most and falls with the first gap between words.
constexpr double highestFirstFloorDB = -30;
constexpr double calibrationPercentile = 0.2;
const int floorFrames = frames(3);
/// The least of three seconds lies below the mean of the noise.
constexpr double floorAboveMinimumDB = 1.5;
constexpr double lowestFloorDB = -75;

constexpr double speechOnDB = 6;
constexpr double speechOffDB = 4;
/// Shorter than any syllable: a click, a key.
const int burstFrames = frames(0.08);

const int leastSpeechFrames = frames(0.3);
const int phrasePauseFrames = frames(0.7);
const int breathPauseFrames = frames(0.5);
/// Twice as long as any consonant is silent.
const int gapFrames = frames(0.3);
/// Words fade out slowly and begin suddenly, but a recogniser needs a little lead.
constexpr double cutWithinPause = 0.65;
/// Quiet consonants drown in less: the shorter the pause, the cleaner the signal has to be.
constexpr double leastContrastDB = 15;
constexpr double leastGapContrastDB = 30;
const std::size_t recentSpeechFrames = FrameLevelMeter::framesIn(10);

}  // namespace

PhrasePauseDetector::PhrasePauseDetector(double sampleRate) : meter_(sampleRate) {}

void PhrasePauseDetector::SpeechLevels::add(double db) {
  const auto bin = static_cast<std::uint8_t>(std::clamp(db - FrameLevelMeter::silenceDB, 0.0, 127.0));
  recent_.push_back(bin);
  ++histogram_[bin];
  if (recent_.size() <= recentSpeechFrames) return;
  --histogram_[recent_.front()];
  recent_.pop_front();
}

double PhrasePauseDetector::SpeechLevels::percentile90() const {
  auto above = static_cast<int>(recent_.size() / 10);
  auto bin = histogram_.size() - 1;
  for (; bin > 0; --bin) {
    above -= histogram_[bin];
    if (above < 0) break;
  }
  return FrameLevelMeter::silenceDB + static_cast<double>(bin);
}

std::optional<double> PhrasePauseDetector::speechDB() const {
  if (speechLevels_.count() == 0) return std::nullopt;
  return speechLevels_.percentile90();
}

std::vector<PhrasePause> PhrasePauseDetector::append(std::span<const float> samples) {
  if (!samples.empty() && !calibrated()) ++calibrationBatches_;
  lastFrames_ = meter_.append(samples);
  std::vector<PhrasePause> pauses;
  for (const auto& frame : lastFrames_) {
    measure(frame);
    if (auto pause = pauseEnding()) pauses.push_back(*pause);
  }
  return pauses;
}

void PhrasePauseDetector::measure(const FrameLevel& frame) {
  const double unfiltered = 10 * std::log10(frame.meanSquare);
  minimumWindowDB_ = std::min(minimumWindowDB_, unfiltered);
  if (unfiltered >= lowestFloorDB) leadingLowLevelEnded_ = true;
  if (!leadingLowLevelEnded_) ++leadingLowLevelFrames_;

  // Zeros are no sound; what comes after them stands for itself.
  if (frame.digitalZero) smoothing_.clear();
  smoothing_.push_back(frame.db);
  if (smoothing_.size() > smoothedFrames) smoothing_.pop_front();
  double smoothed = 0;
  for (const double level : smoothing_) smoothed += level;
  smoothed /= static_cast<double>(smoothing_.size());
  if (frame.digitalZero) smoothing_.clear();

  ++frame_;
  trackFloor(smoothed, frame.digitalZero);
  trackSpeech(smoothed);
  if (frame.digitalZero) ++zeroFrames_;
}

// A device that is not open yet, or a gate that closes between the words, delivers zeros: they say nothing
// about the noise of the room.
void PhrasePauseDetector::trackFloor(double smoothed, bool digitalZero) {
  if (digitalZero) return;
  while (!minima_.empty() && minima_.back().second >= smoothed) minima_.pop_back();
  minima_.emplace_back(frame_, smoothed);
  while (minima_.front().first <= frame_ - floorFrames) minima_.pop_front();

  if (calibration_.size() < calibrationFrames) {
    calibration_.push_back(smoothed);
    if (calibration_.size() < calibrationFrames) return;
    auto sorted = calibration_;
    std::ranges::sort(sorted);
    floorDB_ = std::min(
        sorted[static_cast<std::size_t>(calibrationPercentile * static_cast<double>(calibrationFrames))],
        highestFirstFloorDB);
    return;
  }
  floorDB_ = std::max(minima_.front().second + floorAboveMinimumDB, lowestFloorDB);
}

void PhrasePauseDetector::trackSpeech(double smoothed) {
  if (!floorDB_) return;
  loud_ = smoothed >= *floorDB_ + (loud_ ? speechOffDB : speechOnDB);
  if (!loud_) {
    loudFrames_ = 0;
    return;
  }
  ++loudFrames_;
  if (loudFrames_ < burstFrames) return;
  speechFrames_ += loudFrames_ == burstFrames ? burstFrames : 1;
  speechEnd_ = frame_;
  zeroFrames_ = 0;
  speechLevels_.add(smoothed);
}

bool PhrasePauseDetector::contrasts(std::int64_t pauseFrames, double leastDB) const {
  // Where a gate closes between the phrases there is no noise to mistake for a pause, or to compare with.
  if (2 * zeroFrames_ >= pauseFrames) return true;
  return floorDB_ && speechLevels_.percentile90() >= *floorDB_ + leastDB;
}

std::optional<PhrasePause> PhrasePauseDetector::pauseEnding() {
  const auto length = frame_ - speechEnd_;
  if (length != gapFrames && length != breathPauseFrames && length != phrasePauseFrames) return std::nullopt;
  const bool isPhrase = length == phrasePauseFrames;
  if (speechFrames_ < leastSpeechFrames) return std::nullopt;
  const double contrast = isPhrase              ? leastContrastDB
                          : length == gapFrames ? leastGapContrastDB
                                                : leastBreathContrastDB;
  if (!contrasts(length, contrast)) return std::nullopt;
  const auto cutFrame = speechEnd_ + std::llround(cutWithinPause * static_cast<double>(length));
  const auto cut = meter_.firstSample(static_cast<std::size_t>(cutFrame));
  if (length == gapFrames) return PhrasePause{PhrasePause::Kind::gap, cut};
  if (!isPhrase) return PhrasePause{PhrasePause::Kind::breath, cut};
  speechFrames_ = 0;
  return PhrasePause{PhrasePause::Kind::phrase, cut};
}

}  // namespace murmel
