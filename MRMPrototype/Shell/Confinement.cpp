#include "Shell/Confinement.h"

#include "Settings/DefaultsDocument.h"
#include "Settings/JsonDefaultsStore.h"
#include "Settings/SettingsKeys.h"

#include <fstream>
#include <iterator>
#include <string>

namespace murmel {

ConfinementPolicy confinementPolicy(const Installation& installation) {
  return {.allowsUnconfined = [file = defaultsFile(installation.folders.configuration)] {
    std::ifstream stream(file, std::ios::binary);
    const auto settings = DefaultsDocument::parse(std::string{std::istreambuf_iterator<char>(stream), {}});
    const auto value = settings ? settings->value(settingsKey::allowUnconfinedWorkers) : std::nullopt;
    const bool* const allowed = value ? std::get_if<bool>(&*value) : nullptr;
    return allowed != nullptr && *allowed;
  }};
}

}  // namespace murmel
