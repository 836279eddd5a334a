#pragma once

#include "Foundation/Async/Signal.h"
#include "History/DictationHistory.h"
#include "Storage/SecureLocalFile.h"
#include "Storage/SecureStorageStatus.h"

#include <filesystem>
#include <vector>

namespace murmel {

/// The optional history of finished dictations, newest first, in one sealed file. What cannot be stored stays
/// in memory and shows as the status. Main thread.
class HistoryRepository final : public DictationHistory {
 public:
  /// Loads. `storage` is `historyFile(...)`, or any other sealed file.
  explicit HistoryRepository(SecureLocalFile storage);

  [[nodiscard]] const std::vector<HistoryEntry>& entries() const { return entries_; }
  [[nodiscard]] SecureStorageStatus storageStatus() const { return storageStatus_; }
  /// Emitted before, and after, the entries or the status change.
  [[nodiscard]] Signal<>& willChange() { return willChange_; }
  [[nodiscard]] Signal<>& didChange() { return didChange_; }

  void add(HistoryEntry entry) override;
  void prune(HistoryRetention retention, WallTime now) override;
  /// Removes one entry, if it is there, and stores the list.
  void remove(const Uuid& id);
  /// Removes every entry and makes every copy of the file unreadable.
  void deleteAll();
  /// Stores the list. After a failed load the entries of the file are merged in first; a file that cannot be
  /// decrypted is set aside, and one that cannot be read just now stays as it is, with the list in memory.
  void persist();

 private:
  enum class Loaded { yes, damaged, notNow };

  Loaded load(std::vector<HistoryEntry>& stored);
  bool mergeStored();
  void publish(std::vector<HistoryEntry> entries);
  void setStatus(SecureStorageStatus status);

  SecureLocalFile storage_;
  std::vector<HistoryEntry> entries_;
  SecureStorageStatus storageStatus_ = SecureStorageStatus::available;
  bool loadedSuccessfully_ = false;
  Signal<> willChange_;
  Signal<> didChange_;
};

/// The history's place in the application's data folder: "history.sealed", migrated from "history.json".
SecureLocalFile historyFile(FileSystem& files, LocalEncryptionKeyStore& keyStore,
                            const std::filesystem::path& dataFolder);

/// Follows the application identifier in the service of the history's key store.
inline constexpr std::string_view historyKeyServiceSuffix = ".local-storage.history";

}  // namespace murmel
