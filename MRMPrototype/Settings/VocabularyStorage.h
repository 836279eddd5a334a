#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/SerialQueue.h"
#include "Foundation/SpokenText.h"
#include "Settings/DefaultsStore.h"
#include "Storage/SecureLocalFile.h"
#include "Storage/SecureStorageStatus.h"

#include <functional>
#include <future>
#include <memory>
#include <optional>

namespace murmel {

/// Keeps the text of the personal vocabulary in a sealed file. A file that could not be read is never written
/// over. Main thread; the file and its key are waited for on the queue.
class VocabularyStorage {
 public:
  /// Executor and queue must outlive this. `changed`: the text or the status is another now.
  VocabularyStorage(Executor& executor, SerialQueue& queue, SecureLocalFile file,
                    std::function<void()> changed);
  /// Waits for what is still to be stored.
  ~VocabularyStorage();
  VocabularyStorage(const VocabularyStorage&) = delete;
  VocabularyStorage& operator=(const VocabularyStorage&) = delete;

  /// Begins to read the file; without one, takes over the plain text that earlier versions kept in the
  /// preferences and removes it there. What the user has written while the file could not be read is added
  /// to what is found in it.
  void load(DefaultsStore& defaults);
  /// Keeps the text and begins to seal it; an empty one deletes file and key.
  void store(SpokenText text);
  /// Blocks until what was begun has ended.
  void wait();

  /// Empty until it was read.
  [[nodiscard]] const SpokenText& text() const { return text_; }
  [[nodiscard]] const std::optional<SecureLocalStorageError>& trouble() const { return trouble_; }

 private:
  struct File;
  struct Outcome {
    std::optional<SpokenText> read;
    std::optional<SecureLocalStorageError> trouble;
    bool tookLegacy = false;
    bool isBlind = false;  ///< not written, because what is in the file is not known
  };

  void begin(std::move_only_function<Outcome(File&)> work);
  void take(Outcome outcome);

  Executor& executor_;
  SerialQueue& queue_;
  std::shared_ptr<File> file_;
  std::function<void()> changed_;
  DefaultsStore* defaults_ = nullptr;
  SpokenText text_;
  bool isUnstored_ = false;
  bool isBlind_ = false;  ///< the user wrote it without having seen what is in the file
  std::optional<SecureLocalStorageError> trouble_;
  std::shared_future<void> last_;
  std::shared_ptr<std::optional<Outcome>> outcome_;  ///< of the last job, until it is taken
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

/// `stored` with the lines of `written` that are not in it.
std::string mergedVocabulary(const std::string& stored, const std::string& written);

inline constexpr std::string_view vocabularyFileName = "personal-vocabulary.sealed";

/// The vocabulary's place in the application's data folder: "personal-vocabulary.sealed", migrated from
/// "personal-vocabulary.txt". Another `fileURL` has no legacy file.
SecureLocalFile vocabularyFile(FileSystem& files, LocalEncryptionKeyStore& keyStore,
                               const std::filesystem::path& dataFolder,
                               const std::optional<std::filesystem::path>& fileURL = std::nullopt);

/// Follows the application identifier in the service of the vocabulary's key store.
inline constexpr std::string_view vocabularyKeyServiceSuffix = ".local-storage.vocabulary";

}  // namespace murmel
