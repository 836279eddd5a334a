#pragma once

#include "Platform/FileSystem.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace murmel {

/// What is remembered between checks.
struct UpdateMemory {
  std::optional<std::int64_t> lastCheck;  ///< seconds since 1970
  std::uint64_t highestSerial = 0;        ///< of all feeds that were believed

  /// What `file` holds; the empty memory when it is missing, damaged or cannot be read: a check too many is
  /// the worst that follows.
  static UpdateMemory read(FileSystem& files, const std::filesystem::path& file);
  /// Replaces `file`. False when it could not be written.
  bool write(FileSystem& files, const std::filesystem::path& file) const;

  friend bool operator==(const UpdateMemory&, const UpdateMemory&) = default;
};

}  // namespace murmel
