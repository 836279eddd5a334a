#pragma once

#include "Foundation/Async/Clock.h"

#include <chrono>

namespace murmel {

/// How long a speech worker may take. The defaults are the application's; tests use shorter ones.
struct WorkerLimits {
  /// Until "ready": a large model read from a slow disk.
  Duration start = std::chrono::seconds(90);
  /// Response to a request: twice its audio and something on top, within these two.
  Duration shortestResponse = std::chrono::seconds(45);
  Duration longestResponse = std::chrono::seconds(600);
  Duration responseBase = std::chrono::seconds(30);
  /// Between the friendly signal and the other one. A worker has nothing to save.
  std::chrono::milliseconds terminationGrace{200};
  /// For the last words of a worker that has stopped listening.
  Duration lastWords = std::chrono::seconds(1);

  /// To a request with so much audio.
  [[nodiscard]] Duration response(Duration audio) const;
};

}  // namespace murmel
