#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

namespace murmel {

/// What an escaping program is told about the world around it: all of it is there, and the user's.
struct Prey {
  std::string file;    ///< with contents, in a folder that the user may write to
  std::string socket;  ///< somebody listens on it
  std::string abstractSocket;
  std::uint16_t port = 0;  ///< of this computer; somebody listens
  pid_t process = 0;
  int sharedMemory = -1;  ///< System V
  int messages = -1;      ///< System V
};

/// The names of the attempts that succeeded, each harmless in itself; those of the `spared` kinds are left
/// out.
struct Tried {
  std::vector<std::string> succeeded;
  int count = 0;
};
Tried tryToEscape(const Prey& prey, const std::string& sparedKinds, bool eachInAFork = false);

}  // namespace murmel
