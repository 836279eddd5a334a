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

/// Whether it has ended that was there with this start time, even when its number was given to another one
/// since. Of a start time of 0, which is unknown, nothing is said.
bool hasEnded(pid_t process, std::uint64_t startTime);

/// The process that reads from this pipe, as far as /proc shows it: 0 when none is seen. `likely` is looked
/// at first, which is quick; looking through all processes takes some milliseconds. The answer of `likely` 0
/// is nobody's in particular.
pid_t readerOfPipe(int pipe, pid_t likely);

/// Whether it can be seen what that process has open. Some forbid it.
bool showsItsDescriptors(pid_t process);

}  // namespace murmel
