#pragma once

#include "Product/MRMBuildIdentity.h"

#include <filesystem>
#include <string>

namespace murmel {

/// Who brings new versions to an installation.
enum class UpdateRoad {
  store,          ///< the store that it came from
  systemPackage,  ///< the package manager; the user is told what to type
  direct,         ///< the application itself
  none,           ///< nobody: a build tree, or built and installed by hand
};

/// The folder of a direct installation below the home folder. The application lies in `current` there, a
/// folder that is exchanged as a whole for that of the new version: its path, and with it what a desktop has
/// granted to the executable, stays the same over updates.
inline constexpr const char* directInstallationFolder = ".local/opt/murmel";
inline constexpr const char* currentFolder = "current";

/// `executable` as the system runs it, with no link in it; `home` likewise.
UpdateRoad updateRoad(MRMDistributionChannel channel, const std::filesystem::path& executable,
                      const std::filesystem::path& home);

/// What a user types to bring a package up to date.
std::string packageUpdateCommand(std::string_view applicationIdentifier);

}  // namespace murmel
