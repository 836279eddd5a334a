#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/SerialQueue.h"
#include "History/HistoryExpiry.h"
#include "History/HistoryRepository.h"
#include "Platform/ActivationPolicy.h"
#include "Platform/Linux/Files/FileWatch.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Linux/PropertyList/LibplistReader.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Settings/JsonDefaultsStore.h"
#include "Settings/SettingsRepository.h"
#include "Shell/Installation.h"
#include "Shell/StorageHealth.h"
#include "Storage/KeychainEncryptionKeyStore.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// The settings and the history where the user keeps them. Main thread.
class StorageServices {
 public:
  /// `activationPolicy` is absent without a desktop.
  StorageServices(Executor& executor, const Installation& installation,
                  settingsMigration::ModelIsReady modelIsReady, ActivationPolicyControl* activationPolicy);

  SecretServiceStore secrets;

 private:
  PosixFileSystem files_;
  KeychainEncryptionKeyStore vocabularyKeys_;
  KeychainEncryptionKeyStore historyKeys_;
  SerialQueue queue_;  ///< waits for the sealed files and their keys

 public:
  JsonDefaultsStore defaults;
  SettingsRepository settings;
  HistoryRepository history;
  StorageHealth health;

  /// For an application that stays: takes over what other processes and editors change, and deletes entries
  /// of the history when they are due.
  void follow(Executor& executor, const Clock& clock);
  /// Deletes what is due now: the machine has slept.
  void expire() {
    if (expiry_) expiry_->look();
  }

 private:
  std::filesystem::path data_;
  std::optional<HistoryExpiry> expiry_;
  std::vector<std::unique_ptr<FileWatch>> watches_;
  Registration retentionChange_;

  static SettingsRepositoryParameters parameters(StorageServices& services, Executor& executor,
                                                 const Installation& installation,
                                                 settingsMigration::ModelIsReady modelIsReady,
                                                 ActivationPolicyControl* activationPolicy);
};

}  // namespace murmel
