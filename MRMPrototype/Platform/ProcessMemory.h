#pragma once

#include "Foundation/Registration.h"

#include <cstddef>

namespace murmel {

/// The memory that the system still gives this process. Any thread.
class ProcessMemory {
 public:
  virtual ~ProcessMemory() = default;
  /// Puts so much aside until the registration goes; no page of it is ever touched. Empty where there is not
  /// so much.
  [[nodiscard]] virtual Registration reserve(std::size_t bytes) = 0;
  /// Whether one piece of this size could be had now. A question of microseconds.
  [[nodiscard]] virtual bool canHave(std::size_t bytes) = 0;
};

}  // namespace murmel
