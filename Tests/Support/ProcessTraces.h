#pragma once

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/wait.h>

namespace murmel {

/// How many descriptors this process has open.
inline std::size_t openDescriptorCount() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  // One of them is the iterator's own, in every count.
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

inline std::size_t threadCount() {
  const std::filesystem::directory_iterator entries("/proc/self/task");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

/// Whether a process has ended, reaped or not.
inline bool hasEnded(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string number, name;
  char state = 'X';
  file >> number >> name >> state;
  return state == 'Z' || state == 'X';
}

/// Whether this process has a child, running or not reaped.
inline bool hasChildren() {
  siginfo_t info{};
  return ::waitid(P_ALL, 0, &info, WEXITED | WSTOPPED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

}  // namespace murmel
