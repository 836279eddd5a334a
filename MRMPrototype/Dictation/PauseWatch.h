#pragma once

#include <algorithm>

namespace murmel {

/// Notices by the level of the microphone alone that somebody has paused, so that the captured audio is
/// looked at now. Pure: its time is the number of levels.
class PauseWatch {
 public:
  /// One level, 0 to 1, every 40 ms. True 0.3 and 0.4 s after it has fallen.
  bool observe(double level) {
    loudest_ = std::max(level, loudest_ * fading);
    quiet_ = level < loudest_ / 2 ? quiet_ + 1 : 0;
    return quiet_ == firstLook || quiet_ == secondLook;
  }

 private:
  static constexpr double fading = 0.99;  ///< half in three seconds
  static constexpr int firstLook = 7;
  static constexpr int secondLook = 10;

  double loudest_ = 0;
  int quiet_ = 0;
};

}  // namespace murmel
