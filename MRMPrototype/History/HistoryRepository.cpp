#include "History/HistoryRepository.h"

#include "Foundation/Crypto/Wipe.h"

#include <algorithm>
#include <future>
#include <utility>

namespace murmel {

HistoryRepository::HistoryRepository(Executor& executor, SerialQueue& queue, SecureLocalFile storage)
    : executor_(executor), queue_(queue), file_(std::make_shared<HistoryFile>(std::move(storage))) {
  enqueue({});
}

HistoryRepository::~HistoryRepository() {
  alive_.reset();
  (void)finish();
}

void HistoryRepository::add(HistoryEntry entry) {
  HistoryChanges changes;
  changes.added.push_back(std::move(entry));
  change(std::move(changes));
}

void HistoryRepository::remove(std::set<Uuid> ids) {
  if (std::ranges::none_of(entries_, [&](const auto& entry) { return ids.contains(entry.id); })) return;
  HistoryChanges changes;
  changes.removed = std::move(ids);
  change(std::move(changes));
}

void HistoryRepository::prune(HistoryRetention retention, WallTime now) {
  const auto age = maximumAge(retention);
  if (!age) return;
  HistoryChanges changes;
  changes.cutoff = historyDate(now) - *age;
  const auto expired = [&](const auto& entry) { return entry.createdAt < *changes.cutoff; };
  if (std::ranges::any_of(entries_, expired)) return change(std::move(changes));
  // What is in the file is not known before it has been read.
  if (!loadedSuccessfully_) cutoffAfterLoad_ = changes.cutoff;
}

void HistoryRepository::deleteAll() {
  HistoryChanges changes;
  changes.clears = true;
  change(std::move(changes));
}

void HistoryRepository::change(HistoryChanges changes) {
  publish(applied(entries_, changes), trouble_);
  unstored_.append(std::move(changes));
  store();
  wipeVectorRegisters();
}

void HistoryRepository::reload() {
  wantsReload_ = true;
  store();
}

void HistoryRepository::store() {
  if (isStoring_) return;  // follows when the present one is done
  wantsReload_ = false;
  enqueue(std::exchange(unstored_, {}));
}

/// Reads when there is nothing to change.
void HistoryRepository::enqueue(HistoryChanges changes) {
  isStoring_ = true;
  retry_.reset();
  // After a load that failed the list in memory and the one in the file come together in an order of neither.
  changes.sorts = changes.sorts || (trouble_ && !loadedSuccessfully_);
  inFlight_ = std::move(changes);
  queue_.enqueue([this, file = file_, changes = inFlight_, job = ++lastJob_, &executor = executor_,
                  alive = std::weak_ptr(alive_)] {
    auto result = changes.empty() ? file->load() : file->change(changes);
    executor.post([this, job, alive, result = std::move(result)]() mutable {
      if (!alive.expired()) take(job, std::move(result));
    });
  });
}

void HistoryRepository::take(std::uint64_t job, SecureResult<std::vector<HistoryEntry>> result) {
  if (job != lastJob_) return;
  isStoring_ = false;
  auto changes = std::exchange(inFlight_, {});
  if (!result) {
    const bool hasNews = wantsReload_ || !unstored_.empty();
    changes.append(std::exchange(unstored_, {}));
    unstored_ = std::move(changes);
    publish(entries_, result.error());
    if (hasNews) return store();
    // A damaged file is not better for being read again.
    if (!result.error().isDamage()) retry_ = executor_.after(retryInterval, [this] { reload(); });
    return;
  }
  loadedSuccessfully_ = true;
  if (const auto cutoff = std::exchange(cutoffAfterLoad_, std::nullopt)) {
    const auto expired = [&](const auto& entry) { return entry.createdAt < *cutoff; };
    if (std::ranges::any_of(*result, expired)) unstored_.cutoff = cutoff;
  }
  publish(applied(*std::move(result), unstored_), std::nullopt);
  if (!unstored_.empty() || wantsReload_) store();
}

SecureResult<void> HistoryRepository::finish() {
  auto changes = std::exchange(inFlight_, {});
  changes.append(std::exchange(unstored_, {}));
  ++lastJob_;  // what is being stored is stored again, which changes nothing when it has succeeded
  isStoring_ = false;
  std::promise<SecureResult<void>> stored;
  auto answer = stored.get_future();
  queue_.enqueue([file = file_, changes, stored = std::move(stored)]() mutable {
    SecureResult<void> result;
    if (!changes.empty()) {
      if (const auto changed = file->change(changes); !changed) result = std::unexpected(changed.error());
    }
    stored.set_value(result);
  });
  auto result = answer.get();
  if (!result) unstored_ = std::move(changes);
  return result;
}

void HistoryRepository::publish(std::vector<HistoryEntry> entries,
                                std::optional<SecureLocalStorageError> trouble) {
  if (entries == entries_ && trouble == trouble_) return;
  willChange_.emit();
  entries_ = std::move(entries);
  trouble_ = trouble;
  didChange_.emit();
}

}  // namespace murmel
