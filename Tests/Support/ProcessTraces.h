#pragma once

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <iterator>

#include <sys/wait.h>

namespace murmel {

/// How many descriptors this process has open.
inline std::size_t openDescriptorCount() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  // One of them is the iterator's own, in every count.
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

/// Whether this process has a child, running or not reaped.
inline bool hasChildren() {
  siginfo_t info{};
  return ::waitid(P_ALL, 0, &info, WEXITED | WSTOPPED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

}  // namespace murmel
