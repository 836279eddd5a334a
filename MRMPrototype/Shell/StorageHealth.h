#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "History/HistoryRepository.h"
#include "Settings/SettingsRepository.h"
#include "Storage/SecureStorageStatus.h"

#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace murmel {

/// Whether what the user has said and written down is being kept, in one place for whoever shows it, and the
/// way to cure it. Main thread.
class StorageHealth {
 public:
  /// Asks the user to unlock the key ring, and blocks until they have; called on a thread of its own that may
  /// outlive this.
  using Unlock = std::function<std::expected<void, SecretStatus>()>;

  /// Everything must outlive this.
  StorageHealth(Executor& executor, SettingsRepository& settings, HistoryRepository& history, Unlock unlock);
  ~StorageHealth();
  StorageHealth(const StorageHealth&) = delete;
  StorageHealth& operator=(const StorageHealth&) = delete;

  /// Absent while everything is kept. A history that is switched off has nothing to keep.
  [[nodiscard]] const std::optional<SecureStorageNotice>& notice() const { return notice_; }
  [[nodiscard]] Signal<>& didChange() { return didChange_; }
  /// Asks the user to unlock the key ring; afterwards what was kept in memory is stored. Once at a time.
  void unlock();

 private:
  struct Link;
  void look();

  Executor& executor_;
  SettingsRepository& settings_;
  HistoryRepository& history_;
  Unlock unlock_;
  std::optional<SecureStorageNotice> notice_;
  bool isUnlocking_ = false;
  Signal<> didChange_;
  std::shared_ptr<Link> link_;
  Registration settingsChange_;
  Registration historyChange_;
};

}  // namespace murmel
