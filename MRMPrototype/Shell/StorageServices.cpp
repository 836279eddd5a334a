#include "Shell/StorageServices.h"

#include <utility>

namespace murmel {

StorageServices::StorageServices(const Installation& installation,
                                 settingsMigration::ModelIsReady modelIsReady,
                                 ActivationPolicyControl* activationPolicy)
    : vocabularyKeys_(secrets_, installation.identifier + std::string(vocabularyKeyServiceSuffix)),
      historyKeys_(secrets_, installation.identifier + std::string(historyKeyServiceSuffix)),
      defaults(files_, defaultsFile(installation.folders.configuration)),
      settings(parameters(*this, installation, std::move(modelIsReady), activationPolicy)),
      history(historyFile(files_, historyKeys_, installation.folders.data)) {}

SettingsRepositoryParameters StorageServices::parameters(StorageServices& services,
                                                         const Installation& installation,
                                                         settingsMigration::ModelIsReady modelIsReady,
                                                         ActivationPolicyControl* activationPolicy) {
  settingsMigration::importLegacyPreferences(
      services.defaults, services.files_, LibplistReader(),
      settingsMigration::legacyPropertyList(installation.folders.configuration));
  return {
      .defaults = services.defaults,
      .vocabularyFile = vocabularyFile(services.files_, services.vocabularyKeys_, installation.folders.data),
      // Every edition offers the whole catalogue of language models here.
      .fullGemmaCatalog = true,
      .modelIsReady = std::move(modelIsReady),
      .channel = installation.channel,
      .activationPolicy = activationPolicy,
  };
}

}  // namespace murmel
