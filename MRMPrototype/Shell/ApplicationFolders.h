#pragma once

#include <expected>
#include <filesystem>
#include <string>

namespace murmel {

/// Where the application finds its parts and keeps its data. Absolute paths.
struct ApplicationFolders {
  std::filesystem::path executable;     ///< this program
  std::filesystem::path resources;      ///< `<prefix>/lib/murmel`: Info.json, Workers/, Runtime/
  std::filesystem::path configuration;  ///< `$XDG_CONFIG_HOME`
  std::filesystem::path data;           ///< `$XDG_DATA_HOME/MRM`
  std::filesystem::path temporary;      ///< `$XDG_RUNTIME_DIR`, else the temporary folder

  /// Reads the environment of this process. Fails with one sentence when there is no home folder.
  static std::expected<ApplicationFolders, std::string> locate();
};

}  // namespace murmel
