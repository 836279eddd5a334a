#pragma once

#include "Foundation/Async/SerialQueue.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Settings/SettingsRepository.h"
#include "Storage/KeychainEncryptionKeyStore.h"
#include "Support/InMemoryDefaultsStore.h"
#include "Support/StepFileSystem.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace murmel::test {

class FakeActivationPolicy final : public ActivationPolicyControl {
 public:
  [[nodiscard]] ActivationPolicy current() const override { return policy; }
  void set(ActivationPolicy wanted) override {
    policy = wanted;
    ++changes;
  }
  ActivationPolicy policy = ActivationPolicy::regular;
  int changes = 0;
};

/// Waits for the vocabulary after everything, as time does.
class WaitingSettings final : public SettingsRepository {
 public:
  explicit WaitingSettings(SettingsRepositoryParameters parameters)
      : SettingsRepository(std::move(parameters)) {
    waitForPersonalVocabulary();
  }
  void setPersonalVocabulary(std::string text) {
    SettingsRepository::setPersonalVocabulary(std::move(text));
    waitForPersonalVocabulary();
  }
  void reloadPersonalVocabulary() {
    SettingsRepository::reloadPersonalVocabulary();
    waitForPersonalVocabulary();
  }
};

class SettingsRepositoryTest : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  std::filesystem::path sealed = folder.path() / "personal-vocabulary.sealed";
  StepFileSystem files;
  FakeSecretStore secrets;
  const std::string service = "app.murmel.Test.local-storage.vocabulary";
  KeychainEncryptionKeyStore keys{secrets, service};
  InMemoryDefaultsStore defaults;
  FakeActivationPolicy dock;
  std::set<SmartLocalModel> readyModels;
  bool fullGemmaCatalog = false;
  MRMDistributionChannel channel = MRMDistributionChannel::direct;

  ManualExecutor executor;
  SerialQueue queue{executor, "vocabulary"};
  bool isInventoryKnown = true;

  WaitingSettings open() {
    return WaitingSettings(
        {defaults, executor, queue, vocabularyFile(files, keys, folder.path()), fullGemmaCatalog,
         [this](SmartLocalModel model) {
           return isInventoryKnown ? std::optional(readyModels.contains(model)) : std::nullopt;
         },
         channel, &dock});
  }
  /// A store of a version after the one-time reset of formatting.
  void givenMigrated() { defaults.values["settings.smartLocalQwenMigration"] = true; }
  std::string storedString(std::string_view key) { return defaults.get<std::string>(key).value_or("(none)"); }
};

}  // namespace murmel::test
