#pragma once

#include "Platform/SecretStore.h"
#include "Storage/LocalEncryptionKeyStore.h"

#include <string>
#include <vector>

namespace murmel {

/// Keys in the user's key ring: one item each, under this store's service and the key's identifier as
/// account.
class KeychainEncryptionKeyStore final : public LocalEncryptionKeyStore {
 public:
  /// `service` is the application identifier with a suffix for the data. `otherServices`: those under which
  /// other editions of the application keep the keys of the same files; a key of theirs opens a file too, and
  /// goes with it. The secret store must outlive this.
  KeychainEncryptionKeyStore(SecretStore& secrets, std::string service,
                             std::vector<std::string> otherServices = {});

  SecureResult<NamedKey> createKey(const Announce& announce) override;
  SecureResult<std::optional<SecretBytes>> key(const std::string& identifier) override;
  SecureResult<void> deleteKey(const std::string& identifier) override;

 private:
  SecretStore& secrets_;
  std::string service_;
  std::vector<std::string> services_;  ///< our own first
};

}  // namespace murmel
