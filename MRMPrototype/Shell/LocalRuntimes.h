#pragma once

#include "LocalModels/LocalModelRefiners.h"
#include "Models/ModelCatalog.h"
#include "Shell/Installation.h"

#include <string>

namespace murmel {

RefinerLocations refinerLocations(const Installation& installation);

/// Why the formatting models cannot run, each with what mends it, as it follows "Cannot run here: "; empty
/// where nothing stands against it.
struct LocalRuntimes {
  std::string languageModels;
  std::string russian;

  /// What can be seen at a glance. With `reading`, which takes its time, also whether the files are as
  /// signed.
  static LocalRuntimes of(const Installation& installation, bool reading = false);
};

/// What this computer can run, at a glance.
ModelMachine modelMachine(const Installation& installation);

}  // namespace murmel
