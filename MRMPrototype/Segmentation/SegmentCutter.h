#pragma once

#include "Audio/CapturedAudio.h"
#include "Segmentation/PhrasePauseDetector.h"
#include "Segmentation/SegmentLevels.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace murmel {

/// A part of a recording that is recognised as a whole.
struct CutSegment {
  PendingCapturedAudio audio;
  double seconds = 0;
  SpeechEvidence evidence = SpeechEvidence::none;
  /// The first of its samples after which nobody speaks; none when somebody spoke on after it.
  std::optional<std::int64_t> speechEnd;
  /// dBFS, where the detector knew them when the segment was cut.
  std::optional<double> floorDB;
  std::optional<double> speechDB;
};

/// Cuts a recording into segments. Every sample is in exactly one of them, in order. Pure: its time is the
/// samples, and what it keeps is the segment that is still open.
///
/// A segment ends with the first pause between phrases after the target length. After twice the target the
/// shorter pauses will do, too; when there has been none for so long that the user would wait, the segment
/// ends where it is quiet, and in fluent speech, before the recogniser could not take it, in its quietest
/// moment. Silence is cut off at once.
///
/// While a recogniser has nothing to do, it gets what is finished sooner, and in the end every gap between
/// two words will do: what it hears then need not be waited for at the end.
class SegmentCutter {
 public:
  /// No segment is longer (seconds): recognisers take up to 50 s, and a retry adds a little silence.
  static constexpr double longestSeconds = 49;
  /// For a free recogniser, by kind of the pause. In shorter pieces it has too little to go by, and each
  /// costs as much as a longer one.
  static constexpr double freePhraseSeconds = 6;
  static constexpr double freeBreathSeconds = 9;
  static constexpr double freeGapSeconds = 12;

  /// `targetSeconds` above zero; infinite for as few segments as possible.
  explicit SegmentCutter(double targetSeconds);

  /// The segments that `audio` completes. A changed sample rate begins a new segment. Samples that are not
  /// finite count as zero; audio without a usable rate is no audio.
  std::vector<CutSegment> append(PendingCapturedAudio audio, bool recogniserIsFree = false);
  /// The rest.
  std::optional<CutSegment> flush();
  /// A copy of the open segment, when there is speech in it and it is certain that nobody speaks now.
  [[nodiscard]] std::optional<CutSegment> draft() const;

  /// Seconds appended so far.
  [[nodiscard]] double capturedSeconds() const { return capturedSeconds_; }
  /// Seconds without speech up to now.
  [[nodiscard]] double quietSeconds() const { return detector_ ? detector_->quietSeconds() : 0; }
  /// Whether something as long as a word stands out of the noise in the open segment.
  [[nodiscard]] bool heardSpeech() const {
    return !openFrames_.empty() && speechEvidence(openFrames_) == SpeechEvidence::clear;
  }

  [[nodiscard]] bool calibrated() const { return detector_ && detector_->calibrated(); }
  [[nodiscard]] std::optional<double> floorDB() const {
    return detector_ ? detector_->floorDB() : std::nullopt;
  }
  [[nodiscard]] int calibrationBatches() const;
  [[nodiscard]] double minimumWindowDB() const;
  [[nodiscard]] double leadingLowLevelSeconds() const { return leadingLowLevelSeconds_; }
  [[nodiscard]] bool leadingLowLevelEnded() const { return leadingLowLevelEnded_; }

 private:
  void beginStream(double sampleRate);
  void append(std::span<const float> slice, std::vector<CutSegment>& segments);
  [[nodiscard]] bool accepts(const PhrasePause& pause) const;
  [[nodiscard]] double openSeconds() const;
  [[nodiscard]] std::optional<std::size_t> silentFrames();
  [[nodiscard]] std::optional<std::size_t> placeWithoutPause() const;
  /// Ends the segment after its first `frames` frames.
  CutSegment cutAfterFrames(std::size_t frames);
  CutSegment segment(PrivateVector<float> samples, std::span<const FrameLevel> frames) const;

  double targetSeconds_;
  double patienceSeconds_;
  bool recogniserIsFree_ = false;

  double sampleRate_ = 0;
  std::optional<PhrasePauseDetector> detector_;
  PrivateVector<float> open_;
  std::vector<FrameLevel> openFrames_;
  std::int64_t openBegin_ = 0;  ///< the first sample of the open segment in the stream of this rate
  bool silent_ = true;          ///< whether the open segment may have begun with silence

  double capturedSeconds_ = 0;
  int earlierCalibrationBatches_ = 0;
  double earlierMinimumWindowDB_ = std::numeric_limits<double>::infinity();
  double leadingLowLevelSeconds_ = 0;
  bool leadingLowLevelEnded_ = false;
};

}  // namespace murmel
