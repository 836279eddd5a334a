#pragma once

#include "Foundation/Crypto/SecretBytes.h"
#include "Storage/SecureLocalStorageError.h"

#include <functional>
#include <optional>
#include <string>

namespace murmel {

/// Keeps the keys of sealed files: 256-bit symmetric keys, each under an identifier that the store chooses.
class LocalEncryptionKeyStore {
 public:
  struct NamedKey {
    std::string identifier;
    SecretBytes key;
  };
  /// Told the identifier of a key before the store keeps it, so that the key can be found again whatever
  /// happens to the process in between. An error stops the creation.
  using Announce = std::function<SecureResult<void>(const std::string& identifier)>;

  virtual ~LocalEncryptionKeyStore() = default;

  virtual SecureResult<NamedKey> createKey(const Announce& announce) = 0;
  /// Nothing when the store has no such key.
  virtual SecureResult<std::optional<SecretBytes>> key(const std::string& identifier) = 0;
  /// Succeeds when there is no such key.
  virtual SecureResult<void> deleteKey(const std::string& identifier) = 0;
};

}  // namespace murmel
