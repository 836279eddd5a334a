#pragma once

#include "Foundation/Environment.h"

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
  std::filesystem::path temporary;      ///< `$XDG_RUNTIME_DIR`, as far as nobody else can enter it

  /// Fails with one sentence when there is no home folder. Without a runtime folder of this user's alone that
  /// of the system is taken, so that all starts of a user meet, else one is made in the data folder: in the
  /// common temporary folder another user could be there first.
  static std::expected<ApplicationFolders, std::string> locate(const Environment& environment);

  static std::filesystem::path thisExecutable();
  static std::filesystem::path resourcesOf(const std::filesystem::path& executable);
};

}  // namespace murmel
