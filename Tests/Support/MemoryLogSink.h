#pragma once

#include "Foundation/Log.h"

#include <string>
#include <string_view>
#include <vector>

namespace murmel::test {

/// Keeps what is logged: "category: line". One thread.
class MemoryLogSink final : public LogSink {
 public:
  void write(LogLevel /*level*/, std::string_view /*subsystem*/, std::string_view category,
             std::string_view line) override {
    lines.push_back(std::string(category) + ": " + std::string(line));
  }

  std::vector<std::string> lines;
};

}  // namespace murmel::test
