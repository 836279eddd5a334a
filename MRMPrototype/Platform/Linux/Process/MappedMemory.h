#pragma once

#include "Platform/ProcessMemory.h"

namespace murmel {

/// As address space, which limits of a process and systems that promise no more than they have refuse.
class MappedMemory final : public ProcessMemory {
 public:
  [[nodiscard]] Registration reserve(std::size_t bytes) override;
  [[nodiscard]] bool canHave(std::size_t bytes) override { return static_cast<bool>(reserve(bytes)); }
};

}  // namespace murmel
