#pragma once

#include "Foundation/Async/Signal.h"

namespace murmel {

/// Blends windows with what lies below them, where there is one. Main thread.
class Compositor {
 public:
  virtual ~Compositor() = default;
  [[nodiscard]] virtual bool isThere() const = 0;
  /// It has come or gone.
  virtual Signal<>& didChange() = 0;
};

}  // namespace murmel
