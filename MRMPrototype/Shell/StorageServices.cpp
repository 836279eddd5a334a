#include "Shell/StorageServices.h"

#include <utility>

namespace murmel {

StorageServices::StorageServices(const ApplicationFolders& folders, const std::string& applicationIdentifier,
                                 settingsMigration::ModelIsReady modelIsReady,
                                 ActivationPolicyControl* activationPolicy)
    : vocabularyKeys_(secrets_, applicationIdentifier + std::string(vocabularyKeyServiceSuffix)),
      historyKeys_(secrets_, applicationIdentifier + std::string(historyKeyServiceSuffix)),
      defaults(files_, defaultsFile(folders.configuration)),
      settings(parameters(*this, folders, std::move(modelIsReady), activationPolicy)),
      history(historyFile(files_, historyKeys_, folders.data)) {}

SettingsRepositoryParameters StorageServices::parameters(StorageServices& services,
                                                         const ApplicationFolders& folders,
                                                         settingsMigration::ModelIsReady modelIsReady,
                                                         ActivationPolicyControl* activationPolicy) {
  settingsMigration::importLegacyPreferences(services.defaults, services.files_, LibplistReader(),
                                             settingsMigration::legacyPropertyList(folders.configuration));
  return {
      .defaults = services.defaults,
      .vocabularyFile = vocabularyFile(services.files_, services.vocabularyKeys_, folders.data),
      // Every edition offers the whole catalogue of language models here.
      .fullGemmaCatalog = true,
      .modelIsReady = std::move(modelIsReady),
      .channel = MRMDistributionChannel::direct,
      .activationPolicy = activationPolicy,
  };
}

}  // namespace murmel
