#pragma once

#include "Segmentation/FrameLevelMeter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace murmel {

/// A place where speech may be cut.
struct PhrasePause {
  enum class Kind {
    gap,     ///< a moment between words: where there is no better place for long
    breath,  ///< between words: for want of a better place
    phrase,  ///< between phrases
  };
  Kind kind = Kind::phrase;
  std::int64_t cut = 0;  ///< the first sample after the cut, counted from the start of the stream

  friend bool operator==(const PhrasePause&, const PhrasePause&) = default;
};

/// Finds the pauses in a stream of speech by its level. Pure: its time is the samples. The constants were
/// measured on 36 minutes of natural English and Russian speech, from clean down to 5 dB above the noise: no
/// cut fell into a word; where the speech does not stand out of the noise, there is no cut at all.
class PhrasePauseDetector {
 public:
  /// `sampleRate` in Hz, above zero.
  explicit PhrasePauseDetector(double sampleRate);

  /// The pauses that the samples complete, oldest first. A pause that becomes one between phrases has been
  /// one between words before, and a gap before that.
  std::vector<PhrasePause> append(std::span<const float> samples);

  [[nodiscard]] const FrameLevelMeter& meter() const { return meter_; }
  /// The frames measured by the last `append`.
  [[nodiscard]] std::span<const FrameLevel> lastFrames() const { return lastFrames_; }

  /// How many batches of audio the first noise level was estimated from.
  [[nodiscard]] int calibrationBatches() const { return calibrationBatches_; }
  [[nodiscard]] bool calibrated() const { return floorDB_.has_value(); }
  /// dBFS; the estimate of the noise between the words. None before the calibration.
  [[nodiscard]] std::optional<double> floorDB() const { return floorDB_; }
  /// dBFS; the level that a tenth of the recent speech exceeds. None without speech.
  [[nodiscard]] std::optional<double> speechDB() const;
  /// Seconds since the last speech, or since the beginning.
  [[nodiscard]] double quietSeconds() const {
    return static_cast<double>(frame_ - speechEnd_) * FrameLevelMeter::frameSeconds;
  }
  /// The first sample after the last speech, counted from the start of the stream.
  [[nodiscard]] std::int64_t speechEnd() const {
    return meter_.firstSample(static_cast<std::size_t>(speechEnd_));
  }
  /// Whether the speech stands out of the noise so clearly that what is quiet now is no speech.
  [[nodiscard]] bool isQuietForCertain() const {
    return frame_ > speechEnd_ && contrasts(frame_ - speechEnd_, leastBreathContrastDB);
  }
  /// dBFS of the quietest frame so far, unfiltered; infinite before the first frame, negative infinity for
  /// digital silence.
  [[nodiscard]] double minimumWindowDB() const { return minimumWindowDB_; }
  /// Seconds with next to no signal that the stream began with.
  [[nodiscard]] double leadingLowLevelSeconds() const {
    return leadingLowLevelFrames_ * FrameLevelMeter::frameSeconds;
  }
  [[nodiscard]] bool leadingLowLevelEnded() const { return leadingLowLevelEnded_; }

 private:
  /// dB by which speech stands out of the noise where a breath between words may be told from a quiet word.
  static constexpr double leastBreathContrastDB = 20;

  /// The levels of the recent speech, to the decibel.
  class SpeechLevels {
   public:
    void add(double db);
    [[nodiscard]] std::size_t count() const { return recent_.size(); }
    [[nodiscard]] double percentile90() const;

   private:
    std::deque<std::uint8_t> recent_;
    std::array<int, 128> histogram_{};
  };

  void measure(const FrameLevel& frame);
  void trackFloor(double smoothed, bool digitalZero);
  void trackSpeech(double smoothed);
  [[nodiscard]] bool contrasts(std::int64_t pauseFrames, double leastDB) const;
  std::optional<PhrasePause> pauseEnding();

  FrameLevelMeter meter_;
  std::vector<FrameLevel> lastFrames_;
  std::int64_t frame_ = 0;  ///< frames measured
  std::deque<double> smoothing_;

  std::vector<double> calibration_;
  int calibrationBatches_ = 0;
  std::optional<double> floorDB_;
  /// Smoothed levels that may still be the least of the last seconds: rising, each with its frame.
  std::deque<std::pair<std::int64_t, double>> minima_;

  bool loud_ = false;
  int loudFrames_ = 0;           ///< length of the current stretch above the threshold
  std::int64_t speechEnd_ = 0;   ///< the frame after the last one of speech
  std::int64_t zeroFrames_ = 0;  ///< of digital silence since then
  int speechFrames_ = 0;         ///< since the last pause between phrases
  SpeechLevels speechLevels_;

  double minimumWindowDB_ = std::numeric_limits<double>::infinity();
  int leadingLowLevelFrames_ = 0;
  bool leadingLowLevelEnded_ = false;
};

}  // namespace murmel
