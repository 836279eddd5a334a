#pragma once

#include <cstdint>

namespace murmel {

/// How far recognition lags behind the speech, with hysteresis, so that the display does not flicker.
class DictationBacklog {
 public:
  /// Above this much unrecognised speech (seconds) the user is told that recognition is catching up.
  static constexpr double behindAboveSeconds = 10.0;
  /// Below this much the user is told that it has caught up.
  static constexpr double caughtUpBelowSeconds = 5.0;

  /// `seconds` of audio wait for recognition; `slowRequest` when one request takes longer than it should.
  /// Returns whether `behind` changed.
  bool update(double seconds, bool slowRequest);

  [[nodiscard]] bool behind() const { return behind_; }
  /// The largest backlog seen, in seconds.
  [[nodiscard]] double maximum() const { return maximum_; }
  [[nodiscard]] bool everBehind() const { return everBehind_; }
  [[nodiscard]] bool slowRequestObserved() const { return slowRequestObserved_; }
  /// Grows by one with every change of `behind`, so that a late report can be told from a new one.
  [[nodiscard]] std::int64_t revision() const { return revision_; }

 private:
  bool behind_ = false;
  double maximum_ = 0;
  bool everBehind_ = false;
  bool slowRequestObserved_ = false;
  std::int64_t revision_ = 0;
};

}  // namespace murmel
