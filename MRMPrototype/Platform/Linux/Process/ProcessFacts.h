#pragma once

#include <cstdint>
#include <optional>

#include <sys/types.h>

namespace murmel {

/// State and start time of a process, from /proc.
struct ProcessFacts {
  char state = '?';
  std::uint64_t startTime = 0;  ///< in clock ticks since the start of the system

  [[nodiscard]] bool hasEnded() const { return state == 'Z' || state == 'X'; }
};

/// Nothing when there is no such process.
std::optional<ProcessFacts> factsOf(pid_t process);

}  // namespace murmel
