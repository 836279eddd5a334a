#pragma once

#include "Audio/CaptureHealth.h"
#include "Dictation/DictationState.h"

#include <string>

namespace murmel {

/// The floating indicator of a recording. Main thread.
class OverlayController {
 public:
  virtual ~OverlayController() = default;
  virtual void update(const DictationState& state) = 0;
  /// The level of the microphone, 0…1, from the frames that really arrive.
  virtual void setLevel(double level) = 0;
  /// How the recording fares, when that changes.
  virtual void showCaptureCondition(CaptureCondition condition) = 0;
  /// Shows `hint` in place of the state's own words, at rest too, until it is empty.
  virtual void showHint(const std::string& hint) = 0;
};

}  // namespace murmel
