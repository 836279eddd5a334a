#pragma once

#include "Foundation/Registration.h"

#include <functional>

namespace murmel {

/// The key by which a recording is thrown away: Escape. Main thread.
class CancelKey {
 public:
  virtual ~CancelKey() = default;
  /// Takes the key from all applications until the handle is destroyed; one at a time. `pressed` is called
  /// from the event loop and may destroy the handle. Where somebody else has the key already, it stays
  /// theirs.
  [[nodiscard]] virtual Registration take(std::function<void()> pressed) = 0;
};

/// Where there are no keys.
class NoCancelKey final : public CancelKey {
 public:
  [[nodiscard]] Registration take(std::function<void()> /*pressed*/) override { return {}; }
};

}  // namespace murmel
