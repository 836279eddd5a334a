#pragma once

#include <sys/types.h>

namespace murmel {

/// Everything the child needs between fork and exec, made ready by the parent: the child may neither allocate
/// nor take a lock. All descriptors are above `childLowestFree`, so that none is overwritten while they are
/// put in place.
struct ChildSetup {
  int input = -1;       ///< becomes descriptor 0
  int output = -1;      ///< becomes descriptor 1
  int nullDevice = -1;  ///< becomes descriptor 2
  int executable = -1;  ///< what is executed
  int report = -1;      ///< where a failure is told
  pid_t parent = 0;
  char* const* arguments = nullptr;
  char* const* environment = nullptr;
};

/// The first descriptor that is none of the child's own: three standard ones, the executable, the report.
inline constexpr int childLowestFree = 5;

/// Where in the set-up a child failed, and why. Small enough to be written to a pipe at once.
struct ChildFailure {
  enum class Step : int { descriptors, limits, parentDied, execute };
  Step step = Step::execute;
  int error = 0;  ///< errno
};

/// Runs in the forked child with every signal blocked; ends in the executable or in `_exit`.
[[noreturn]] void becomeExecutable(const ChildSetup& setup);

}  // namespace murmel
