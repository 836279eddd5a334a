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
  /// The microphone delivers nothing but digital silence, as a dead or muted one does; false when that is
  /// over.
  virtual void showSilentMicrophone(bool silent) = 0;
};

}  // namespace murmel
