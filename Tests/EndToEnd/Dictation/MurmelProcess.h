#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace murmel::test {

/// The application as the user starts it. What it says on standard output and standard error goes to a file.
/// Ends with this object, as a crash ends it.
class MurmelProcess {
 public:
  MurmelProcess(const std::vector<std::string>& arguments, std::filesystem::path log);
  ~MurmelProcess();
  MurmelProcess(const MurmelProcess&) = delete;
  MurmelProcess& operator=(const MurmelProcess&) = delete;

  [[nodiscard]] pid_t identifier() const { return process_; }
  [[nodiscard]] std::string log() const;

  /// The exit status once it has ended, 128 and the signal when a signal ended it; nothing while it runs.
  std::optional<int> exitStatus();

 private:
  pid_t process_ = -1;
  std::filesystem::path log_;
  std::optional<int> status_;
};

}  // namespace murmel::test
