#pragma once

#include "History/HistoryRepository.h"
#include "Platform/ActivationPolicy.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Linux/PropertyList/LibplistReader.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Settings/JsonDefaultsStore.h"
#include "Settings/SettingsRepository.h"
#include "Shell/Installation.h"
#include "Storage/KeychainEncryptionKeyStore.h"

#include <string>

namespace murmel {

/// The settings and the history where the user keeps them. Main thread.
class StorageServices {
 public:
  /// `activationPolicy` is absent without a desktop.
  StorageServices(const Installation& installation, settingsMigration::ModelIsReady modelIsReady,
                  ActivationPolicyControl* activationPolicy);

 private:
  PosixFileSystem files_;
  SecretServiceStore secrets_;
  KeychainEncryptionKeyStore vocabularyKeys_;
  KeychainEncryptionKeyStore historyKeys_;

 public:
  JsonDefaultsStore defaults;
  SettingsRepository settings;
  HistoryRepository history;

 private:
  static SettingsRepositoryParameters parameters(StorageServices& services, const Installation& installation,
                                                 settingsMigration::ModelIsReady modelIsReady,
                                                 ActivationPolicyControl* activationPolicy);
};

}  // namespace murmel
