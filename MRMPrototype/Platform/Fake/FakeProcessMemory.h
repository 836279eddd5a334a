#pragma once

#include "Platform/ProcessMemory.h"

#include <limits>

namespace murmel {

/// Memory of which a test says how much there is.
class FakeProcessMemory final : public ProcessMemory {
 public:
  std::size_t room = std::numeric_limits<std::size_t>::max();

  [[nodiscard]] Registration reserve(std::size_t bytes) override {
    if (bytes > room) return {};
    room -= bytes;
    return Registration([this, bytes] { room += bytes; });
  }
  [[nodiscard]] bool canHave(std::size_t bytes) override { return bytes <= room; }
};

}  // namespace murmel
