#include "Shell/StorageServices.h"

#include "Shell/EditionKeys.h"

#include <utility>

namespace murmel {

StorageServices::StorageServices(Executor& executor, const Installation& installation,
                                 settingsMigration::ModelIsReady modelIsReady,
                                 ActivationPolicyControl* activationPolicy)
    : vocabularyKeys_(editionKeys(secrets, installation.identifier, vocabularyKeyServiceSuffix)),
      historyKeys_(editionKeys(secrets, installation.identifier, historyKeyServiceSuffix)),
      queue_(executor, "private-storage"),
      defaults(files_, defaultsFile(installation.folders.configuration)),
      settings(parameters(*this, executor, installation, std::move(modelIsReady), activationPolicy)),
      history(executor, queue_, historyFile(files_, historyKeys_, installation.folders.data)),
      health(executor, settings, history, [] { return SecretServiceStore().unlock(); }),
      data_(installation.folders.data) {}

SettingsRepositoryParameters StorageServices::parameters(StorageServices& services, Executor& executor,
                                                         const Installation& installation,
                                                         settingsMigration::ModelIsReady modelIsReady,
                                                         ActivationPolicyControl* activationPolicy) {
  settingsMigration::importLegacyPreferences(
      services.defaults, services.files_, LibplistReader(),
      settingsMigration::legacyPropertyList(installation.folders.configuration));
  return {
      .defaults = services.defaults,
      .executor = executor,
      .queue = services.queue_,
      .vocabularyFile = vocabularyFile(services.files_, services.vocabularyKeys_, installation.folders.data),
      // Every edition offers the whole catalogue of language models here.
      .fullGemmaCatalog = true,
      .modelIsReady = std::move(modelIsReady),
      .channel = installation.channel,
      .activationPolicy = activationPolicy,
  };
}

void StorageServices::follow(Executor& executor, const Clock& clock) {
  expiry_.emplace(executor, clock, history, [this] { return settings.historyRetention(); });
  retentionChange_ = settings.didChange().subscribe([this](SettingsProperty property) {
    if (property == SettingsProperty::historyRetention) expire();
  });
  // A folder that is not there cannot be watched.
  (void)files_.makeFolders(data_);
  const auto watch = [&](const std::vector<std::filesystem::path>& watched, std::function<void()> changed) {
    watches_.push_back(std::make_unique<FileWatch>(executor, watched, std::move(changed)));
  };
  watch(defaults.watchedFiles(), [this] {
    if (defaults.reload()) settings.reload();
  });
  watch({data_ / historyFileName}, [this] { history.reload(); });
  watch({data_ / vocabularyFileName}, [this] { settings.reloadPersonalVocabulary(); });
}

}  // namespace murmel
