#pragma once

#include "Foundation/Crypto/AesGcm.h"
#include "Foundation/Crypto/Crypto.h"
#include "Foundation/Uuid.h"
#include "Storage/LocalEncryptionKeyStore.h"
#include "Support/FileBytes.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace murmel {

/// Keys that outlive the process, one a file, as a key ring of its own process would keep them.
class FolderKeyStore final : public LocalEncryptionKeyStore {
 public:
  /// `before` is called before each thing that changes or reads the store.
  explicit FolderKeyStore(
      std::filesystem::path folder, std::function<void()> before = [] {})
      : folder_(std::move(folder)), before_(std::move(before)) {
    std::filesystem::create_directories(folder_);
  }

  SecureResult<NamedKey> createKey(const Announce& announce) override {
    NamedKey created{Uuid::random().text(), SecretBytes(crypto::aes256KeySize)};
    (void)crypto::fillRandom(created.key.reveal());
    if (const auto announced = announce(created.identifier); !announced)
      return std::unexpected(announced.error());
    before_();
    writeFile(folder_ / created.identifier, textOf(created.key.reveal()));
    return created;
  }
  SecureResult<std::optional<SecretBytes>> key(const std::string& identifier) override {
    before_();
    // Whether there is one is not asked beforehand: another process may delete it in between.
    const auto contents = contentsOf(folder_ / identifier);
    if (contents.empty()) return std::nullopt;
    return SecretBytes(bytesOf(contents));
  }
  SecureResult<void> deleteKey(const std::string& identifier) override {
    before_();
    std::filesystem::remove(folder_ / identifier);
    return {};
  }

  [[nodiscard]] std::set<std::string> identifiers() const { return namesIn(folder_); }

 private:
  std::filesystem::path folder_;
  std::function<void()> before_;
};

}  // namespace murmel
