#pragma once

#include "Platform/Linux/Confinement/CallFilter.h"
#include "Platform/Linux/Process/PrivateRoot.h"

#include <sys/resource.h>
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
  int reportEnd = -1;   ///< the parent's end of that
  char* const* arguments = nullptr;
  char* const* environment = nullptr;
  int landlock = -1;                  ///< the rules on files; -1 without any
  const PrivateRoot* root = nullptr;  ///< where the child was made with its namespaces
  const confinement::CallProgram* calls = nullptr;
  std::uint64_t password = 0;  ///< with which `calls` lets the one program start
  rlim_t openFiles = 0;
  rlim_t largestFile = 0;
};

/// The first descriptor that is none of the child's own: three standard ones, the executable, the report, the
/// rules on files.
inline constexpr int childLowestFree = 6;

/// Where in the set-up a child failed, and why. Small enough to be written to a pipe at once.
struct ChildFailure {
  enum class Step : int { descriptors, limits, root, confinement, parentDied, execute };
  Step step = Step::execute;
  int error = 0;  ///< errno
};

/// Runs in the forked child with every signal blocked; ends in the executable or in `_exit`.
[[noreturn]] void becomeExecutable(const ChildSetup& setup);

}  // namespace murmel
