#pragma once

#include "Foundation/Async/Task.h"
#include "Platform/Workspace.h"

namespace murmel {

/// What applications tell of the field that has the keyboard. Main thread.
class FocusedField {
 public:
  virtual ~FocusedField() = default;

  /// Whether the field that has the keyboard in `application` hides what is typed, as password fields do.
  /// False when the application does not tell, which many do not, or not within 50 ms.
  virtual Task<bool> hidesText(RunningApplication application) = 0;
};

}  // namespace murmel
