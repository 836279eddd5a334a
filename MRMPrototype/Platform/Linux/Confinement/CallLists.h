#pragma once

#include "Platform/Linux/Confinement/CallFilter.h"

namespace murmel::confinement {

/// What a child needs beside computing and reading what it may read.
struct CallNeeds {
  enum class Sockets {
    none,
    serves,    ///< listens on a Unix socket, and never connects
    unixOnly,  ///< connects to Unix sockets
    internet,
  };
  Sockets sockets = Sockets::none;
  bool writes = false;  ///< changes files
  bool forks = false;
  /// The one start of a program: only an `execveat` that carries this number as its sixth argument, which the
  /// call does not have, is let through. The started program does not know it.
  std::uint64_t password = 0;
};

/// For a program from its start on: loading itself, its libraries and what it works with.
[[nodiscard]] std::optional<CallProgram> launchedProgram(const CallNeeds& needs);

/// For a worker that has loaded everything: computing in threads on memory that is not executable, reading
/// its input and writing its output.
[[nodiscard]] std::optional<CallProgram> readyWorker();

/// For the keeper of the clipboard once it is connected: it also exchanges messages on what is open.
[[nodiscard]] std::optional<CallProgram> connectedKeeper();

}  // namespace murmel::confinement
