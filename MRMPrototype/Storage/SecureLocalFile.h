#pragma once

#include "Foundation/Crypto/SecretBytes.h"
#include "Platform/FileSystem.h"
#include "Storage/FileAccess.h"
#include "Storage/LocalEncryptionKeyStore.h"
#include "Storage/PendingKeys.h"
#include "Storage/SecureLocalStorageError.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace murmel {

/// One small piece of private data in a file that is sealed under a key of the key store. Every write takes a
/// fresh key and deletes the one before, so deleting the present key makes every copy of the file unreadable.
///
/// A write that fails or is cut short leaves the old file with its key, or the new file with its key; what
/// else it left is removed by the next operation. Several processes may use the same file; what they make of
/// its content goes through `update`, so that none loses the work of another. One thread at a time; every
/// call blocks for the disk and the key store.
class SecureLocalFile {
 public:
  using SetFilePermissions = std::function<FileResult<void>(const std::filesystem::path& file)>;
  /// Like `replaceFile`: must call `prepare` before the new bytes take the file's place.
  using WriteAtomically =
      std::function<FileResult<void>(std::span<const std::uint8_t> bytes, const std::filesystem::path& file,
                                     const PrepareReplacement& prepare)>;

  /// `legacyFileURLs` are plain-text files of the same data from earlier versions, sealed and removed by the
  /// first read. The file system and the key store must outlive this. The functions default to mode 0600 and
  /// to `replaceFile`.
  SecureLocalFile(FileSystem& files, LocalEncryptionKeyStore& keyStore, std::filesystem::path fileURL,
                  std::vector<std::filesystem::path> legacyFileURLs = {},
                  SetFilePermissions setFilePermissions = {}, WriteAtomically writeAtomically = {});

  [[nodiscard]] const std::filesystem::path& fileURL() const { return fileURL_; }

  /// The plaintext; nothing when there is neither the sealed file nor a legacy one.
  SecureResult<std::optional<SecretBytes>> read();
  SecureResult<void> write(std::span<const std::uint8_t> plaintext);

  /// What becomes of the content: new content, an empty one to delete file and key, or nothing to leave it.
  /// Gets what is in the file, nothing when there is none. An error that is damage says that the content is
  /// not what it should be.
  using Change =
      std::function<SecureResult<std::optional<SecretBytes>>(const std::optional<SecretBytes>& content)>;
  enum class OnDamage {
    refuse,    ///< a file that cannot be opened or understood stays, and the update fails
    setAside,  ///< it is renamed, and the change is applied to nothing
  };
  /// Reads, changes and writes under the lock of all writers. `change` may be called twice.
  SecureResult<void> update(const Change& change, OnDamage onDamage = OnDamage::refuse);
  /// Deletes the key, the file, its copies that were set aside, and the legacy files. Where one of them
  /// resists, the others go all the same and the first error is given.
  SecureResult<void> deleteCryptographically();
  /// Applies the permissions to an existing file again.
  void hardenExisting();

 private:
  struct Decrypted {
    std::string keyID;
    SecureResult<SecretBytes> plaintext;
  };

  SecureResult<UniqueDescriptor> lock();
  SecureResult<std::optional<std::vector<std::uint8_t>>> fileBytes(const std::filesystem::path& file);
  SecureResult<std::optional<std::string>> keyIDOf(const std::filesystem::path& file);
  Decrypted decrypt(std::span<const std::uint8_t> bytes);
  SecureResult<std::optional<SecretBytes>> readSealed();
  struct Legacy {
    std::filesystem::path file;
    SecretBytes plaintext;
  };
  SecureResult<std::optional<Legacy>> legacy();
  /// `obsolete`: keys that still wait to be deleted. With the lock held.
  SecureResult<void> replace(std::span<const std::uint8_t> plaintext, std::vector<std::string> obsolete);
  void removeMigratedLegacyFiles(const SecretBytes& plaintext);
  SecureResult<void> seal(const LocalEncryptionKeyStore::NamedKey& key,
                          std::span<const std::uint8_t> plaintext);
  /// Ends what an earlier operation could not. Gives the keys that still wait to be deleted.
  SecureResult<std::vector<std::string>> finishInterrupted();
  void finishInterruptedIfAny();
  /// Deletes keys and keeps in mind those that could not be.
  void deleteKeys(const std::vector<std::string>& identifiers);
  SecureResult<void> erase();
  SecureResult<void> removeAll(const std::vector<std::filesystem::path>& doomed);

  FileSystem& files_;
  LocalEncryptionKeyStore& keyStore_;
  std::filesystem::path fileURL_;
  std::vector<std::filesystem::path> legacyFileURLs_;
  SetFilePermissions setFilePermissions_;
  WriteAtomically writeAtomically_;
  PendingKeys pending_;
};

}  // namespace murmel
