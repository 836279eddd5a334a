#pragma once

#include "Foundation/Log.h"

#include <algorithm>
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

  /// All of them, each ended.
  [[nodiscard]] std::string text() const {
    std::string all;
    for (const auto& line : lines) all += line + '\n';
    return all;
  }
  /// How many begin with `event`.
  [[nodiscard]] std::ptrdiff_t count(const std::string& event) const {
    return std::ranges::count_if(lines, [&](const auto& line) { return line.contains(": " + event); });
  }

  std::vector<std::string> lines;
};

}  // namespace murmel::test
