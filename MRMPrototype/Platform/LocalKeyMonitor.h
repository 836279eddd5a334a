#pragma once

#include "Foundation/Registration.h"
#include "Platform/KeyEvent.h"

#include <functional>

namespace murmel {

/// The keys that this application's own windows receive. Main thread.
class LocalKeyMonitor {
 public:
  using Handler = std::function<void(const KeyEvent&)>;

  virtual ~LocalKeyMonitor() = default;

  /// `handler` runs for each keyDown, keyUp and flagsChanged, before the window that it is meant for gets the
  /// event, which passes on unchanged. Any number of monitors may be there at a time.
  [[nodiscard]] virtual Registration add(Handler handler) = 0;
};

}  // namespace murmel
