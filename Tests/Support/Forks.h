#pragma once

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

namespace murmel {

/// Runs `work` in a process of its own; the status that it gives, or the signal that ended it, negative.
inline int inAFork(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

inline bool succeedsInAFork(const std::function<bool()>& work) {
  return inAFork([&work] { return work() ? 0 : 1; }) == 0;
}

}  // namespace murmel
