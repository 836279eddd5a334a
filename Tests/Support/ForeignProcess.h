#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <array>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace murmel::test {

/// Another program, with its standard output to read; what it complains about is dropped. It ends with this
/// object, at the latest with the test.
class ForeignProcess {
 public:
  explicit ForeignProcess(std::vector<std::string> command) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    output_ = UniqueDescriptor(ends[0]);
    const UniqueDescriptor input(ends[1]);
    std::vector<char*> arguments;
    for (auto& argument : command) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    identifier_ = ::fork();
    if (identifier_ < 0) throw std::runtime_error("no process");
    if (identifier_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      ::dup2(input.get(), STDOUT_FILENO);
      ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
      ::execvp(arguments[0], arguments.data());
      ::_exit(127);
    }
  }
  ~ForeignProcess() { end(SIGTERM); }
  ForeignProcess(const ForeignProcess&) = delete;
  ForeignProcess& operator=(const ForeignProcess&) = delete;

  void end(int signal) {
    if (identifier_ <= 0) return;
    ::kill(identifier_, signal);
    ::waitpid(identifier_, nullptr, 0);
    identifier_ = 0;
  }

  /// Reads on until the output holds `text`, for ten seconds at most. What was read before counts too.
  bool waitForOutput(const std::string& text) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (outputSoFar_.find(text) == std::string::npos) {
      const auto left =
          std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
      pollfd ready{output_.get(), POLLIN, 0};
      if (left.count() <= 0 || ::poll(&ready, 1, static_cast<int>(left.count())) <= 0) return false;
      std::array<char, 4'096> buffer{};
      const auto count = ::read(output_.get(), buffer.data(), buffer.size());
      if (count <= 0) return false;
      outputSoFar_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return true;
  }
  [[nodiscard]] const std::string& outputSoFar() const { return outputSoFar_; }
  void forgetOutput() { outputSoFar_.clear(); }

 private:
  pid_t identifier_ = 0;
  UniqueDescriptor output_;
  std::string outputSoFar_;
};

}  // namespace murmel::test
