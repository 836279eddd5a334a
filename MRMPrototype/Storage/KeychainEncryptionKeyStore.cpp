#include "Storage/KeychainEncryptionKeyStore.h"

#include "Foundation/Crypto/AesGcm.h"
#include "Foundation/Crypto/Crypto.h"
#include "Foundation/Uuid.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace murmel {

KeychainEncryptionKeyStore::KeychainEncryptionKeyStore(SecretStore& secrets, std::string service,
                                                       std::vector<std::string> otherServices)
    : secrets_(secrets), service_(service), services_{std::move(service)} {
  std::ranges::move(otherServices, std::back_inserter(services_));
}

SecureResult<LocalEncryptionKeyStore::NamedKey> KeychainEncryptionKeyStore::createKey(
    const Announce& announce) {
  SecretBytes key(crypto::aes256KeySize);
  if (!crypto::fillRandom(key.reveal())) {
    return std::unexpected(SecureLocalStorageError::keychain(secretStatus::noRandomBytes));
  }
  NamedKey created{Uuid::random().text(), std::move(key)};
  // Asked first, so that nothing is announced to a store that is not there.
  const auto present = secrets_.find(service_, created.identifier);
  if (!present && present.error() != secretStatus::itemNotFound)
    return std::unexpected(SecureLocalStorageError::keychain(present.error()));
  if (announce) {
    if (const auto announced = announce(created.identifier); !announced) {
      return std::unexpected(announced.error());
    }
  }
  if (const auto added = secrets_.add(service_, created.identifier, created.key); !added) {
    return std::unexpected(SecureLocalStorageError::keychain(added.error()));
  }
  return created;
}

SecureResult<std::optional<SecretBytes>> KeychainEncryptionKeyStore::key(const std::string& identifier) {
  for (const auto& service : services_) {
    auto found = secrets_.find(service, identifier);
    if (!found && found.error() == secretStatus::itemNotFound) continue;
    if (!found) return std::unexpected(SecureLocalStorageError::keychain(found.error()));
    if (found->size() != crypto::aes256KeySize)
      return std::unexpected(SecureLocalStorageError::keychain(secretStatus::storeFailed));
    return std::move(*found);
  }
  return std::nullopt;
}

SecureResult<void> KeychainEncryptionKeyStore::deleteKey(const std::string& identifier) {
  for (const auto& service : services_) {
    const auto removed = secrets_.remove(service, identifier);
    if (removed) return {};
    if (removed.error() != secretStatus::itemNotFound)
      return std::unexpected(SecureLocalStorageError::keychain(removed.error()));
  }
  return {};
}

}  // namespace murmel
