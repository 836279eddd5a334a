#pragma once

#include "Support/ChildProgram.h"
#include "Support/FileBytes.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace murmel::test {

/// The application as the user starts it; what it says goes to a file.
class MurmelProcess : public ChildProgram {
 public:
  MurmelProcess(std::vector<std::string> arguments, std::filesystem::path log,
                const std::string& executable = MURMEL_EXECUTABLE)
      : ChildProgram(
            [&] {
              arguments.insert(arguments.begin(), executable);
              return std::move(arguments);
            }(),
            log),
        log_(std::move(log)) {}

  [[nodiscard]] std::string log() const { return contentsOf(log_); }

 private:
  std::filesystem::path log_;
};

}  // namespace murmel::test
