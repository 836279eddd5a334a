#pragma once

#include "Support/ChildProgram.h"

#include <array>
#include <chrono>
#include <string>

#include <poll.h>

namespace murmel::test {

/// A program whose output is read until it has said something. It is asked to end with this object.
class ForeignProcess : public ChildProgram {
 public:
  using ChildProgram::ChildProgram;
  ~ForeignProcess() { end(SIGTERM); }

  /// Reads on until the output holds `text`, for ten seconds at most. What was read before counts too.
  bool waitForOutput(const std::string& text) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (outputSoFar_.find(text) == std::string::npos) {
      const auto left =
          std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
      pollfd ready{output(), POLLIN, 0};
      if (left.count() <= 0 || ::poll(&ready, 1, static_cast<int>(left.count())) <= 0) return false;
      std::array<char, 4'096> buffer{};
      const auto count = ::read(output(), buffer.data(), buffer.size());
      if (count <= 0) return false;
      outputSoFar_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return true;
  }
  [[nodiscard]] const std::string& outputSoFar() const { return outputSoFar_; }
  void forgetOutput() { outputSoFar_.clear(); }

 private:
  std::string outputSoFar_;
};

}  // namespace murmel::test
