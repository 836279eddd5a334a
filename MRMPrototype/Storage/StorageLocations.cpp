#include "Storage/StorageLocations.h"

namespace murmel {

StorageLocations StorageLocations::from(const Environment& environment) {
  const auto folder = [&](const char* variable, const char* belowHome) -> std::filesystem::path {
    const std::filesystem::path given = environment(variable).value_or(std::string());
    if (given.is_absolute()) return given;
    return std::filesystem::path(environment("HOME").value_or(".")) / belowHome;
  };
  const auto data = folder("XDG_DATA_HOME", ".local/share");
  const auto configuration = folder("XDG_CONFIG_HOME", ".config");
  return {data / "MRM", configuration / "MRM" / "defaults.json",
          configuration / "Preferences" / "app.mrm.prototype.plist"};
}

}  // namespace murmel
