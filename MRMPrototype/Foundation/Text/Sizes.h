#pragma once

#include <concepts>
#include <string>

#include <fmt/core.h>

namespace murmel {

/// As the command line shows the size of a file.
std::string megabytes(std::integral auto bytes) {
  return fmt::format("{:.0f} MB", static_cast<double>(bytes) / 1e6);
}

}  // namespace murmel
