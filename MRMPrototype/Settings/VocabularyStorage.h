#pragma once

#include "Foundation/SpokenText.h"
#include "Settings/DefaultsStore.h"
#include "Storage/SecureLocalFile.h"
#include "Storage/SecureStorageStatus.h"

namespace murmel {

/// Keeps the text of the personal vocabulary in a sealed file. A file that could not be read is never written
/// over. Main thread.
class VocabularyStorage {
 public:
  explicit VocabularyStorage(SecureLocalFile file) : file_(std::move(file)) {}

  /// Reads the file; without one, takes over the plain text that earlier versions kept in the preferences and
  /// removes it there. Empty on any failure, which shows as the status.
  SpokenText load(DefaultsStore& defaults);
  /// Seals the text; an empty one deletes file and key.
  void store(const SpokenText& text);

  [[nodiscard]] SecureStorageStatus status() const { return status_; }
  [[nodiscard]] bool loadedSuccessfully() const { return loadedSuccessfully_; }

 private:
  bool write(const SpokenText& text);

  SecureLocalFile file_;
  SecureStorageStatus status_ = SecureStorageStatus::available;
  bool loadedSuccessfully_ = true;
};

/// The vocabulary's place in the application's data folder: "personal-vocabulary.sealed", migrated from
/// "personal-vocabulary.txt". Another `fileURL` has no legacy file.
SecureLocalFile vocabularyFile(FileSystem& files, LocalEncryptionKeyStore& keyStore,
                               const std::filesystem::path& dataFolder,
                               const std::optional<std::filesystem::path>& fileURL = std::nullopt);

/// Follows the application identifier in the service of the vocabulary's key store.
inline constexpr std::string_view vocabularyKeyServiceSuffix = ".local-storage.vocabulary";

}  // namespace murmel
