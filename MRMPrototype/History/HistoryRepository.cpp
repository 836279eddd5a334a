#include "History/HistoryRepository.h"

#include "History/HistoryCodec.h"

#include <algorithm>
#include <set>
#include <utility>

namespace murmel {

HistoryRepository::HistoryRepository(SecureLocalFile storage) : storage_(std::move(storage)) {
  storage_.hardenExisting();
  std::vector<HistoryEntry> stored;
  loadedSuccessfully_ = load(stored) == Loaded::yes;
  if (loadedSuccessfully_) {
    entries_ = std::move(stored);
  } else {
    storageStatus_ = SecureStorageStatus::unavailable;
  }
}

HistoryRepository::Loaded HistoryRepository::load(std::vector<HistoryEntry>& stored) {
  const auto plaintext = storage_.read();
  if (!plaintext) return plaintext.error().isDamage() ? Loaded::damaged : Loaded::notNow;
  if (!*plaintext) return Loaded::yes;
  auto decoded = decodeHistory((*plaintext)->reveal());
  if (!decoded) return Loaded::damaged;
  stored = std::move(*decoded);
  return Loaded::yes;
}

void HistoryRepository::add(HistoryEntry entry) {
  willChange_.emit();
  entries_.insert(entries_.begin(), std::move(entry));
  didChange_.emit();
  persist();
}

void HistoryRepository::remove(const Uuid& id) {
  const auto hasIdentifier = [&](const auto& entry) { return entry.id == id; };
  if (std::ranges::none_of(entries_, hasIdentifier)) return;
  willChange_.emit();
  std::erase_if(entries_, hasIdentifier);
  didChange_.emit();
  persist();
}

void HistoryRepository::prune(HistoryRetention retention, WallTime now) {
  const auto age = maximumAge(retention);
  if (!age) return;
  const double cutoff = historyDate(now) - *age;
  const auto expired = [&](const auto& entry) { return entry.createdAt < cutoff; };
  if (std::ranges::none_of(entries_, expired)) return;
  willChange_.emit();
  std::erase_if(entries_, expired);
  didChange_.emit();
  persist();
}

void HistoryRepository::deleteAll() {
  publish({});
  const auto erased = storage_.deleteCryptographically();
  if (erased) loadedSuccessfully_ = true;  // nothing is left that a later write could lose
  setStatus(erased ? SecureStorageStatus::available : SecureStorageStatus::unavailable);
}

bool HistoryRepository::mergeStored() {
  std::vector<HistoryEntry> stored;
  const auto loaded = load(stored);
  if (loaded == Loaded::notNow) return false;
  if (loaded == Loaded::damaged && !storage_.setAside()) return false;
  std::set<Uuid> known;
  for (const auto& entry : entries_) known.insert(entry.id);
  auto merged = entries_;
  for (auto& entry : stored) {
    if (!known.contains(entry.id)) merged.push_back(std::move(entry));
  }
  std::ranges::stable_sort(merged, std::ranges::greater(), &HistoryEntry::createdAt);
  publish(std::move(merged));
  loadedSuccessfully_ = true;
  return true;
}

void HistoryRepository::persist() {
  if (!loadedSuccessfully_ && !mergeStored()) {
    setStatus(SecureStorageStatus::unavailable);
    return;
  }
  const auto bytes = encodeHistory(entries_);
  const auto written = storage_.write(bytes.reveal());
  setStatus(written ? SecureStorageStatus::available : SecureStorageStatus::unavailable);
}

void HistoryRepository::publish(std::vector<HistoryEntry> entries) {
  willChange_.emit();
  entries_ = std::move(entries);
  didChange_.emit();
}

void HistoryRepository::setStatus(SecureStorageStatus status) {
  if (status == storageStatus_) return;
  willChange_.emit();
  storageStatus_ = status;
  didChange_.emit();
}

SecureLocalFile historyFile(FileSystem& files, LocalEncryptionKeyStore& keyStore,
                            const std::filesystem::path& dataFolder) {
  return {files, keyStore, dataFolder / "history.sealed", {dataFolder / "history.json"}};
}

}  // namespace murmel
