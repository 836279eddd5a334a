#include "History/HistoryFile.h"

#include "History/HistoryCodec.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace murmel {

namespace {

SecureResult<std::vector<HistoryEntry>> decoded(const std::optional<SecretBytes>& content) {
  if (!content) return std::vector<HistoryEntry>{};
  auto entries = decodeHistory(content->reveal());
  if (!entries)
    return std::unexpected(SecureLocalStorageError(SecureLocalStorageError::Case::unreadableContent));
  return *std::move(entries);
}

}  // namespace

void HistoryChanges::append(HistoryChanges later) {
  if (later.clears) {
    *this = std::move(later);
    return;
  }
  std::ranges::move(added, std::back_inserter(later.added));
  added = std::move(later.added);
  removed.merge(later.removed);
  if (later.cutoff) cutoff = std::max(*later.cutoff, cutoff.value_or(*later.cutoff));
  sorts = sorts || later.sorts;
}

std::vector<HistoryEntry> applied(std::vector<HistoryEntry> stored, const HistoryChanges& changes) {
  auto entries = changes.added;
  std::set<Uuid> known;
  for (const auto& entry : entries) known.insert(entry.id);
  if (!changes.clears) {
    for (auto& entry : stored) {
      if (!known.contains(entry.id)) entries.push_back(std::move(entry));
    }
  }
  std::erase_if(entries, [&](const auto& entry) {
    return changes.removed.contains(entry.id) || (changes.cutoff && entry.createdAt < *changes.cutoff);
  });
  if (changes.sorts) std::ranges::stable_sort(entries, std::ranges::greater(), &HistoryEntry::createdAt);
  return entries;
}

SecureResult<std::vector<HistoryEntry>> HistoryFile::load() {
  storage_.hardenExisting();
  const auto content = storage_.read();
  if (!content) return std::unexpected(content.error());
  return decoded(*content);
}

SecureResult<std::vector<HistoryEntry>> HistoryFile::change(const HistoryChanges& changes) {
  if (changes.clears) {
    if (const auto erased = storage_.deleteCryptographically(); !erased)
      return std::unexpected(erased.error());
    if (changes.added.empty()) return std::vector<HistoryEntry>{};
  }
  std::vector<HistoryEntry> result;
  const auto updated = storage_.update(
      [&](const std::optional<SecretBytes>& content) -> SecureResult<std::optional<SecretBytes>> {
        auto stored = decoded(content);
        if (!stored) return std::unexpected(stored.error());
        result = applied(*stored, changes);
        if (result == *stored) return std::nullopt;
        return encodeHistory(result);
      },
      SecureLocalFile::OnDamage::setAside);
  if (!updated) return std::unexpected(updated.error());
  return result;
}

SecureLocalFile historyFile(FileSystem& files, LocalEncryptionKeyStore& keyStore,
                            const std::filesystem::path& dataFolder) {
  return {files, keyStore, dataFolder / historyFileName, {dataFolder / "history.json"}};
}

}  // namespace murmel
