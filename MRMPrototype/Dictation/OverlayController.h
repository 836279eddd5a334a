#pragma once

#include "Dictation/DictationState.h"

namespace murmel {

/// The floating indicator of a recording. Main thread.
class OverlayController {
 public:
  virtual ~OverlayController() = default;
  virtual void update(const DictationState& state) = 0;
  /// The level of the microphone, 0…1, from the frames that really arrive.
  virtual void setLevel(double level) = 0;
};

}  // namespace murmel
