#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/SerialQueue.h"
#include "Foundation/Async/Signal.h"
#include "History/DictationHistory.h"
#include "History/HistoryFile.h"
#include "History/HistoryRetention.h"
#include "Storage/SecureStorageStatus.h"

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace murmel {

/// The optional history of finished dictations, newest first, in one sealed file that other processes may use
/// too. What cannot be stored stays in memory and shows as the status. Main thread; the file and its key are
/// waited for on the queue.
class HistoryRepository : public DictationHistory {
 public:
  /// How often a file that could not be reached is tried again.
  static constexpr Duration retryInterval = std::chrono::minutes(1);

  /// Begins to load. Executor and queue must outlive this.
  HistoryRepository(Executor& executor, SerialQueue& queue, SecureLocalFile storage);
  /// Waits for what is still to be stored.
  ~HistoryRepository() override;

  /// With what has not been stored yet.
  [[nodiscard]] const std::vector<HistoryEntry>& entries() const { return entries_; }
  [[nodiscard]] SecureStorageStatus storageStatus() const {
    return trouble_ ? SecureStorageStatus::unavailable : SecureStorageStatus::available;
  }
  /// Why the status is `unavailable`.
  [[nodiscard]] const std::optional<SecureLocalStorageError>& trouble() const { return trouble_; }
  /// Emitted before, and after, the entries or the status change.
  [[nodiscard]] Signal<>& willChange() { return willChange_; }
  [[nodiscard]] Signal<>& didChange() { return didChange_; }
  /// Nothing is being read or written, nothing waits to be.
  [[nodiscard]] bool isSettled() const { return !isStoring_; }

  void add(HistoryEntry entry) override;
  /// Removes what is older than `retention` allows at `now`.
  void prune(HistoryRetention retention, WallTime now);
  /// Removes those of the entries that are there, and stores the list.
  void remove(std::set<Uuid> ids);
  /// Removes every entry and makes every copy of the file unreadable.
  void deleteAll();
  /// Reads the file again, and stores what could not be stored before: another process has changed it, or the
  /// key ring has become available.
  void reload();
  /// Blocks until everything is stored or has failed. After a failure what is not stored is still in memory,
  /// and another call tries again.
  SecureResult<void> finish();

 private:
  void change(HistoryChanges changes);
  void store();
  void enqueue(HistoryChanges changes);
  void take(std::uint64_t job, SecureResult<std::vector<HistoryEntry>> result);
  void publish(std::vector<HistoryEntry> entries, std::optional<SecureLocalStorageError> trouble);

  Executor& executor_;
  SerialQueue& queue_;
  std::shared_ptr<HistoryFile> file_;
  std::vector<HistoryEntry> entries_;
  HistoryChanges unstored_;  ///< not handed to the queue yet
  HistoryChanges inFlight_;  ///< being stored
  std::optional<SecureLocalStorageError> trouble_;
  bool loadedSuccessfully_ = false;
  std::optional<double> cutoffAfterLoad_;
  bool isStoring_ = false;  ///< or loading
  bool wantsReload_ = false;
  std::uint64_t lastJob_ = 0;  ///< answers to earlier ones are out of date
  Registration retry_;
  Signal<> willChange_;
  Signal<> didChange_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< weakly held by what was posted
};

}  // namespace murmel
