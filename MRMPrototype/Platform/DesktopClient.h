#pragma once

#include <cstdint>

#include <sys/types.h>

namespace murmel {

/// A program as the display server knows it: by the process at the other end of the connection, not by what
/// the program says about itself.
struct DesktopClient {
  pid_t processIdentifier = 0;   ///< 0 when the server cannot tell (a program on another machine)
  std::uint32_t connection = 0;  ///< the server's number for the connection; 0 when unknown

  friend bool operator==(const DesktopClient&, const DesktopClient&) = default;
};

/// Whether two connections belong to one program. A process may have several connections, and the number of a
/// connection is given to the next program when the first one ends: it decides only where a process is
/// unknown.
constexpr bool isSameProgram(const DesktopClient& one, const DesktopClient& other) {
  if (one.processIdentifier != 0 && other.processIdentifier != 0)
    return one.processIdentifier == other.processIdentifier;
  return one.connection != 0 && one.connection == other.connection;
}

}  // namespace murmel
