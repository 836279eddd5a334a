#pragma once

#include <cerrno>
#include <cstdint>
#include <span>
#include <string_view>

#include <unistd.h>

namespace murmel {

/// Writes everything, however little the system takes at a time. False when it takes no more: nobody reads,
/// the disk is full, or the descriptor does not wait.
inline bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

inline bool writeAll(int descriptor, std::span<const std::uint8_t> bytes) {
  return writeAll(descriptor, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

}  // namespace murmel
