#pragma once

#include "History/HistoryEntry.h"
#include "Storage/SecureLocalFile.h"

#include <optional>
#include <set>
#include <vector>

namespace murmel {

/// What is to be done to a stored history. To apply the same changes twice is to apply them once.
struct HistoryChanges {
  bool clears = false;                ///< everything that was there before goes
  std::vector<HistoryEntry> added{};  ///< newest first
  std::set<Uuid> removed{};
  std::optional<double> cutoff{};  ///< what was made earlier goes
  bool sorts = false;              ///< by date, because what was added is older than it looks

  [[nodiscard]] bool empty() const { return !clears && added.empty() && removed.empty() && !cutoff; }
  /// Adds changes that came later.
  void append(HistoryChanges later);
};

/// `stored` with the changes.
std::vector<HistoryEntry> applied(std::vector<HistoryEntry> stored, const HistoryChanges& changes);

/// The history in its sealed file, as several processes share it. One thread at a time; every call blocks.
class HistoryFile {
 public:
  explicit HistoryFile(SecureLocalFile storage) : storage_(std::move(storage)) {}

  /// Empty when there is no file. A damaged file stays where it is.
  SecureResult<std::vector<HistoryEntry>> load();
  /// Applies changes to what is in the file now, and gives what is there afterwards. A damaged file is set
  /// aside; one that cannot be read just now stays, and nothing is changed.
  SecureResult<std::vector<HistoryEntry>> change(const HistoryChanges& changes);

 private:
  SecureLocalFile storage_;
};

inline constexpr std::string_view historyFileName = "history.sealed";

/// The history's place in the application's data folder: "history.sealed", migrated from "history.json".
SecureLocalFile historyFile(FileSystem& files, LocalEncryptionKeyStore& keyStore,
                            const std::filesystem::path& dataFolder);

/// Follows the application identifier in the service of the history's key store.
inline constexpr std::string_view historyKeyServiceSuffix = ".local-storage.history";

}  // namespace murmel
