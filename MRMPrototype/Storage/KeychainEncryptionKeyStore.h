#pragma once

#include "Platform/SecretStore.h"
#include "Storage/LocalEncryptionKeyStore.h"

#include <string>

namespace murmel {

/// Keys in the user's key ring: one item each, under this store's service and the key's identifier as
/// account.
class KeychainEncryptionKeyStore final : public LocalEncryptionKeyStore {
 public:
  /// `service` is the application identifier with a suffix for the data. The secret store must outlive this.
  KeychainEncryptionKeyStore(SecretStore& secrets, std::string service);

  SecureResult<NamedKey> createKey(const Announce& announce) override;
  SecureResult<std::optional<SecretBytes>> key(const std::string& identifier) override;
  SecureResult<void> deleteKey(const std::string& identifier) override;

 private:
  SecretStore& secrets_;
  std::string service_;
};

}  // namespace murmel
