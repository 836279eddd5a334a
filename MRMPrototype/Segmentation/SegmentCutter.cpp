#include "Segmentation/SegmentCutter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace murmel {

namespace {

/// How much longer than the target a segment gets before it is cut without a found pause. The quietest half
/// second of so long a stretch lies between two words, also in noise.
constexpr double searchSeconds = 17;
constexpr double breathAfterTargets = 2;

/// A beginning without speech is cut off when it is this long, but for a lead for the word that may follow.
constexpr double leastSilenceSeconds = 3;
constexpr double leadSeconds = 1;

/// A batch may be long; it is looked at in pieces, so that no segment grows much over its limit.
constexpr double sliceSeconds = 0.1;
constexpr double largestSlice = 1e6;  // samples

}  // namespace

SegmentCutter::SegmentCutter(double targetSeconds)
    : targetSeconds_(targetSeconds),
      patienceSeconds_(std::min(targetSeconds + searchSeconds, longestSeconds)) {}

void SegmentCutter::beginStream(double sampleRate) {
  if (detector_) {
    earlierCalibrationBatches_ += detector_->calibrationBatches();
    earlierMinimumWindowDB_ = std::min(earlierMinimumWindowDB_, detector_->minimumWindowDB());
    // A second device has nothing to do with how the recording began.
    leadingLowLevelEnded_ = true;
  }
  sampleRate_ = sampleRate;
  detector_.emplace(sampleRate);
  openBegin_ = 0;
  silent_ = true;
}

std::vector<CutSegment> SegmentCutter::append(PendingCapturedAudio audio, bool recogniserIsFree) {
  std::vector<CutSegment> segments;
  recogniserIsFree_ = recogniserIsFree;
  if (audio.monoSamples.empty() || !std::isfinite(audio.sampleRate) || audio.sampleRate <= 0) return segments;
  if (audio.sampleRate != sampleRate_) {
    if (auto rest = flush()) segments.push_back(*std::move(rest));
    beginStream(audio.sampleRate);
  }
  for (auto& sample : audio.monoSamples)
    if (!std::isfinite(sample)) sample = 0;
  capturedSeconds_ += static_cast<double>(audio.monoSamples.size()) / sampleRate_;

  const auto slice = static_cast<std::size_t>(std::clamp(sampleRate_ * sliceSeconds, 1.0, largestSlice));
  const std::span<const float> samples(audio.monoSamples);
  for (std::size_t at = 0; at < samples.size(); at += slice)
    append(samples.subspan(at, std::min(slice, samples.size() - at)), segments);
  return segments;
}

void SegmentCutter::append(std::span<const float> slice, std::vector<CutSegment>& segments) {
  open_.insert(open_.end(), slice.begin(), slice.end());
  const auto pauses = detector_->append(slice);
  openFrames_.insert(openFrames_.end(), detector_->lastFrames().begin(), detector_->lastFrames().end());
  if (!leadingLowLevelEnded_) {
    leadingLowLevelSeconds_ = detector_->leadingLowLevelSeconds();
    leadingLowLevelEnded_ = detector_->leadingLowLevelEnded();
  }

  for (const auto& pause : pauses) {
    if (!accepts(pause)) continue;
    const auto& meter = detector_->meter();
    segments.push_back(cutAfterFrames(meter.frameOf(pause.cut) - meter.frameOf(openBegin_)));
  }
  if (const auto silence = silentFrames()) segments.push_back(cutAfterFrames(*silence));
  if (const auto place = placeWithoutPause()) segments.push_back(cutAfterFrames(*place));
}

bool SegmentCutter::accepts(const PhrasePause& pause) const {
  const double seconds = static_cast<double>(pause.cut - openBegin_) / sampleRate_;
  const auto least = [&](double target, double freeTarget) {
    return recogniserIsFree_ ? std::min(target, freeTarget) : target;
  };
  switch (pause.kind) {
    case PhrasePause::Kind::phrase:
      return seconds >= least(targetSeconds_, freePhraseSeconds);
    case PhrasePause::Kind::breath:
      return seconds >= least(breathAfterTargets * targetSeconds_, freeBreathSeconds);
    case PhrasePause::Kind::gap:
      return recogniserIsFree_ && seconds >= freeGapSeconds;
  }
  return false;
}

double SegmentCutter::openSeconds() const {
  return static_cast<double>(open_.size()) / sampleRate_;
}

std::optional<std::size_t> SegmentCutter::silentFrames() {
  const auto lead = FrameLevelMeter::framesIn(leadSeconds);
  if (!silent_ || openFrames_.size() < FrameLevelMeter::framesIn(leastSilenceSeconds) + lead)
    return std::nullopt;
  silent_ = speechEvidence(openFrames_) == SpeechEvidence::none;
  if (!silent_) return std::nullopt;
  return openFrames_.size() - lead;
}

std::optional<std::size_t> SegmentCutter::placeWithoutPause() const {
  if (openSeconds() < patienceSeconds_ || openFrames_.empty()) return std::nullopt;
  const auto from = std::min(FrameLevelMeter::framesIn(std::min(targetSeconds_, patienceSeconds_ / 2)),
                             openFrames_.size() - 1);
  const auto place = quietestPlace(std::span(openFrames_).subspan(from));
  if (!place.isPause && openSeconds() < longestSeconds) return std::nullopt;
  return from + place.frame;
}

CutSegment SegmentCutter::cutAfterFrames(std::size_t frameCount) {
  const auto& meter = detector_->meter();
  const auto cut = meter.firstSample(meter.frameOf(openBegin_) + frameCount);
  const auto sampleCount = static_cast<std::ptrdiff_t>(cut - openBegin_);
  PrivateVector<float> samples(open_.begin(), open_.begin() + sampleCount);
  auto done = segment(std::move(samples), std::span(openFrames_).first(frameCount));
  if (done.evidence != SpeechEvidence::none) recogniserIsFree_ = false;
  open_.erase(open_.begin(), open_.begin() + sampleCount);
  openFrames_.erase(openFrames_.begin(), openFrames_.begin() + static_cast<std::ptrdiff_t>(frameCount));
  openBegin_ = cut;
  silent_ = true;
  return done;
}

CutSegment SegmentCutter::segment(PrivateVector<float> samples, std::span<const FrameLevel> frames) const {
  CutSegment done;
  done.seconds = static_cast<double>(samples.size()) / sampleRate_;
  done.audio.monoSamples = std::move(samples);
  done.audio.sampleRate = sampleRate_;
  done.evidence = speechEvidence(frames);
  const auto speechEnd = detector_->speechEnd() - openBegin_;
  if (speechEnd > 0 && speechEnd <= std::ssize(done.audio.monoSamples)) done.speechEnd = speechEnd;
  done.floorDB = detector_->floorDB();
  done.speechDB = detector_->speechDB();
  return done;
}

std::optional<CutSegment> SegmentCutter::flush() {
  if (open_.empty()) return std::nullopt;
  auto rest = segment(std::exchange(open_, {}), openFrames_);
  openFrames_.clear();
  sampleRate_ = 0;  // whatever follows begins another stream
  return rest;
}

std::optional<CutSegment> SegmentCutter::draft() const {
  if (!detector_ || !detector_->isQuietForCertain() || !heardSpeech()) return std::nullopt;
  return segment(open_, openFrames_);
}

int SegmentCutter::calibrationBatches() const {
  return earlierCalibrationBatches_ + (detector_ ? detector_->calibrationBatches() : 0);
}

double SegmentCutter::minimumWindowDB() const {
  return detector_ ? std::min(earlierMinimumWindowDB_, detector_->minimumWindowDB())
                   : earlierMinimumWindowDB_;
}

}  // namespace murmel
