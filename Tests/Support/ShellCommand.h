#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace murmel {

/// Runs a shell command and gives what it writes. One that fails is an error.
inline std::string bytesFrom(const std::string& command) {
  FILE* pipe = ::popen(command.c_str(), "re");
  if (pipe == nullptr) throw std::runtime_error("popen: " + command);
  std::string output;
  std::array<char, 4'096> piece{};
  while (const auto count = std::fread(piece.data(), 1, piece.size(), pipe))
    output.append(piece.data(), count);
  if (::pclose(pipe) != 0) throw std::runtime_error("failed: " + command);
  return output;
}

/// The same without the last line end.
inline std::string outputOf(const std::string& command) {
  auto output = bytesFrom(command);
  while (output.ends_with('\n')) output.pop_back();
  return output;
}

/// Whether a shell command succeeds; its output is dropped.
inline bool succeeds(const std::string& command) {
  return std::system(("exec >/dev/null 2>&1; " + command).c_str()) == 0;
}

}  // namespace murmel
