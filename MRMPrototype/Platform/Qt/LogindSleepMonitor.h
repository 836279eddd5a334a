#pragma once

#include "Foundation/Async/Signal.h"

#include <memory>

namespace murmel {

/// Tells when the computer has woken from a suspend, as logind says it on the system bus. Without that bus it
/// says nothing. Main thread.
class LogindSleepMonitor {
 public:
  /// Needs a QCoreApplication.
  LogindSleepMonitor();
  ~LogindSleepMonitor();
  LogindSleepMonitor(const LogindSleepMonitor&) = delete;
  LogindSleepMonitor& operator=(const LogindSleepMonitor&) = delete;

  [[nodiscard]] Signal<>& didWake() { return didWake_; }

 private:
  class Listener;
  Signal<> didWake_;
  std::unique_ptr<Listener> listener_;
};

}  // namespace murmel
