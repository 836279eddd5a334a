#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace murmel {

/// Where the application keeps what it keeps, by the XDG base directories.
struct StorageLocations {
  std::filesystem::path dataFolder;         ///< sealed files
  std::filesystem::path defaultsFile;       ///< preferences
  std::filesystem::path legacyPreferences;  ///< property list of the earlier application identity

  /// The value of an environment variable, nothing when it is not set.
  using Environment = std::function<std::optional<std::string>(const std::string& name)>;
  /// A folder that is not absolute is as good as not set; without a home folder everything is below ".".
  static StorageLocations from(const Environment& environment);
};

}  // namespace murmel
