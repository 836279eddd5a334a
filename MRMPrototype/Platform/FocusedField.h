#pragma once

#include "Foundation/Async/Task.h"
#include "Platform/Workspace.h"

namespace murmel {

/// What has the keyboard in an application, by its own word.
enum class FocusedFieldKind {
  notTold,     ///< the application does not tell of its fields
  text,        ///< a place that may take text
  hidden,      ///< a field that hides what is typed, as those for passwords do
  none,        ///< a button, a link or the like: nothing that takes text
  unanswered,  ///< the application does tell of its fields, but did not this time
};

/// Which applications can tell of their fields.
enum class FieldTellers {
  nobody,
  some,  ///< but not those that do so only when assistive technologies are switched on
  all,   ///< whose toolkit tells at all
};

/// What applications tell of the field that has the keyboard. Main thread.
class FocusedField {
 public:
  virtual ~FocusedField() = default;

  [[nodiscard]] virtual FieldTellers tellers() = 0;

  /// Text will be meant for `application` soon: finds out by then what has the keyboard in it.
  virtual void prepare(const RunningApplication& application) = 0;

  /// What has the keyboard in `application` now. An application that does not answer costs at most 250 ms,
  /// one that was started a few seconds ago and does not tell of its fields a second more.
  virtual Task<FocusedFieldKind> kind(RunningApplication application) = 0;
};

}  // namespace murmel
