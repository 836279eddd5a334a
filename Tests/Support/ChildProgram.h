#pragma once

#include "Foundation/UniqueDescriptor.h"
#include "Support/FileBytes.h"

#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace murmel::test {

/// Another program as a child of the test. Its standard input and output are pipes, or everything that it
/// says goes to a file. It is killed when this object goes, at the latest when the test does.
class ChildProgram {
 public:
  explicit ChildProgram(std::vector<std::string> command, std::filesystem::path log = {});
  ~ChildProgram() { end(SIGKILL); }
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  [[nodiscard]] pid_t identifier() const { return process_; }
  [[nodiscard]] int input() const { return input_.get(); }
  [[nodiscard]] int output() const { return output_.get(); }

  /// Everything that it has said to its file.
  [[nodiscard]] std::string log() const { return contentsOf(log_); }
  /// What it says up to the end of the line, without it.
  [[nodiscard]] std::string line() const;
  void closeInput() { input_.reset(); }
  /// Sends the signal, 0 for none, and waits until it is gone.
  void end(int signal);
  /// The exit status once it has ended, 128 and the signal when a signal ended it; nothing while it runs.
  std::optional<int> exitStatus() { return look(false); }

 private:
  std::optional<int> look(bool waits);

  pid_t process_ = -1;
  std::filesystem::path log_;
  std::optional<int> status_;
  UniqueDescriptor input_, output_;
};

}  // namespace murmel::test
