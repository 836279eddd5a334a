#include "MRMUpdatePolicy/UpdateRoad.h"

namespace murmel {

UpdateRoad updateRoad(MRMDistributionChannel channel, const std::filesystem::path& executable,
                      const std::filesystem::path& home) {
  if (channel == MRMDistributionChannel::appStore) return UpdateRoad::store;
  if (executable == home / directInstallationFolder / currentFolder / "bin" / "murmel")
    return UpdateRoad::direct;
  return executable.parent_path() == "/usr/bin" ? UpdateRoad::systemPackage : UpdateRoad::none;
}

std::string packageUpdateCommand(std::string_view applicationIdentifier) {
  const bool isLite = applicationIdentifier.ends_with(".Lite");
  return std::string("sudo apt update && sudo apt install --only-upgrade ") +
         (isLite ? "murmel-lite" : "murmel");
}

}  // namespace murmel
