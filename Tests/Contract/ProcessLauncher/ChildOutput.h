#pragma once

#include "Foundation/WriteAll.h"

#include <cerrno>
#include <optional>
#include <string>
#include <string_view>

#include <poll.h>
#include <unistd.h>

namespace murmel {

/// Reads lines from a child; nothing at its end, or when nothing comes for ten seconds: a hang.
class ChildOutput {
 public:
  explicit ChildOutput(int descriptor) : descriptor_(descriptor) {}

  std::optional<std::string> line() {
    std::string text;
    for (char byte = 0; read(byte);) {
      if (byte == '\n') return text;
      text += byte;
    }
    return std::nullopt;
  }

 private:
  bool read(char& byte) const {
    constexpr int hangMilliseconds = 10'000;
    pollfd waited{descriptor_, POLLIN, 0};
    return ::poll(&waited, 1, hangMilliseconds) > 0 && ::read(descriptor_, &byte, 1) == 1;
  }

  int descriptor_;
};

}  // namespace murmel
