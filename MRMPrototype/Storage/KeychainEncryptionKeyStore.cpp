#include "Storage/KeychainEncryptionKeyStore.h"

#include "Foundation/Crypto/AesGcm.h"
#include "Foundation/Crypto/Crypto.h"
#include "Foundation/Uuid.h"

#include <utility>

namespace murmel {

KeychainEncryptionKeyStore::KeychainEncryptionKeyStore(SecretStore& secrets, std::string service)
    : secrets_(secrets), service_(std::move(service)) {}

SecureResult<LocalEncryptionKeyStore::NamedKey> KeychainEncryptionKeyStore::createKey(
    const Announce& announce) {
  SecretBytes key(crypto::aes256KeySize);
  if (!crypto::fillRandom(key.reveal())) {
    return std::unexpected(SecureLocalStorageError::keychain(secretStatus::noRandomBytes));
  }
  NamedKey created{Uuid::random().text(), std::move(key)};
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
  auto found = secrets_.find(service_, identifier);
  if (!found) {
    if (found.error() == secretStatus::itemNotFound) return std::nullopt;
    return std::unexpected(SecureLocalStorageError::keychain(found.error()));
  }
  if (found->size() != crypto::aes256KeySize) {
    return std::unexpected(SecureLocalStorageError::keychain(secretStatus::storeFailed));
  }
  return std::move(*found);
}

SecureResult<void> KeychainEncryptionKeyStore::deleteKey(const std::string& identifier) {
  const auto removed = secrets_.remove(service_, identifier);
  if (!removed && removed.error() != secretStatus::itemNotFound) {
    return std::unexpected(SecureLocalStorageError::keychain(removed.error()));
  }
  return {};
}

}  // namespace murmel
