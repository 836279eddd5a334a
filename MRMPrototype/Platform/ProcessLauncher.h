#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <chrono>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace murmel {

/// What identifies an executable file while it is open or runs: not its name, which can be exchanged.
struct ExecutableIdentity {
  dev_t device = 0;
  ino_t inode = 0;

  friend bool operator==(const ExecutableIdentity&, const ExecutableIdentity&) = default;
};

/// What a child may do beside computing, reading its input and writing its output. What is not named here is
/// refused by the system from before the child's first instruction on: other files, other processes,
/// programs, connections.
struct ProcessSandbox {
  enum class Network {
    none,
    unixServer,  ///< listens on a Unix socket that it makes in `socketFolder`
    unixOnly,    ///< connects to Unix sockets
    internet,    ///< opens connections; nobody connects to it
  };
  static constexpr std::uint64_t unlimited = ~std::uint64_t{0};
  struct Limits {
    std::uint64_t openFiles = 256;
    std::uint64_t largestFile = unlimited;  ///< in bytes; nothing where nothing is writable
  };

  /// Files and folders, beside the system's libraries and the folder of the executable.
  std::vector<std::filesystem::path> readable{};
  /// Folders with everything below them.
  std::vector<std::filesystem::path> writable{};
  std::filesystem::path socketFolder{};  ///< sockets may be made there, and nothing else
  Network network = Network::none;
  bool startsCopies = false;  ///< may fork, never execute
  Limits limits{};
};

/// A child with its standard input and output as pipes, standard error the null device, no other descriptor,
/// and only the environment that is given here. It dies with the thread that launched it, and leaves no core
/// dump.
struct ProcessRequest {
  std::filesystem::path executable;      ///< absolute
  std::vector<std::string> arguments;    ///< without the program name
  std::vector<std::string> environment;  ///< "NAME=value"
  ProcessSandbox sandbox{};
};

/// A running or ended child. Destroying it ends the child and reaps it. One thread at a time, except
/// `terminate`.
class ChildProcess {
 public:
  virtual ~ChildProcess() = default;

  [[nodiscard]] virtual pid_t identifier() const = 0;
  /// The write end of the child's standard input; -1 after `closeInput`.
  [[nodiscard]] virtual int input() const = 0;
  /// The read end of the child's standard output.
  [[nodiscard]] virtual int output() const = 0;
  /// Readable from the child's end on, whoever reaps it.
  [[nodiscard]] virtual int endDescriptor() const = 0;
  virtual void closeInput() = 0;
  [[nodiscard]] virtual bool isRunning() = 0;
  /// Asks the child to end and, when it has not after `grace`, kills it; returns when it is gone and reaped.
  virtual void terminate(std::chrono::milliseconds grace) = 0;
  /// The file that the child executes, read from the running process; nothing when it has ended.
  [[nodiscard]] virtual std::expected<ExecutableIdentity, std::string> runningIdentity() const = 0;
  /// The file that was opened and checked for the start.
  [[nodiscard]] virtual ExecutableIdentity launchedIdentity() const = 0;
};

/// Starts the application's own worker executables. Thread-safe.
class ProcessLauncher {
 public:
  virtual ~ProcessLauncher() = default;
  /// The error is the system's reason, without any argument of the request.
  virtual std::expected<std::unique_ptr<ChildProcess>, std::string> launch(const ProcessRequest& request) = 0;
};

}  // namespace murmel
