#include "Shell/StorageHealth.h"

#include <mutex>
#include <thread>
#include <utility>

namespace murmel {

/// What the thread that waits for the user may still reach.
struct StorageHealth::Link {
  std::mutex mutex;
  StorageHealth* health = nullptr;
};

StorageHealth::StorageHealth(Executor& executor, SettingsRepository& settings, HistoryRepository& history,
                             Unlock unlock)
    : executor_(executor),
      settings_(settings),
      history_(history),
      unlock_(std::move(unlock)),
      link_(std::make_shared<Link>()),
      settingsChange_(settings.didChange().subscribe([this](SettingsProperty) { look(); })),
      historyChange_(history.didChange().subscribe([this] { look(); })) {
  link_->health = this;
  look();
}

StorageHealth::~StorageHealth() {
  const std::lock_guard lock(link_->mutex);
  link_->health = nullptr;
}

void StorageHealth::look() {
  std::optional<SecureStorageNotice> notice;
  const bool keepsHistory = settings_.historyEnabled() || !history_.entries().empty();
  if (const auto& trouble = history_.trouble(); trouble && keepsHistory) {
    notice.emplace(*trouble);
  } else if (const auto& other = settings_.vocabularyTrouble()) {
    notice.emplace(*other);
  }
  if (notice == notice_) return;
  notice_ = std::move(notice);
  didChange_.emit();
}

void StorageHealth::unlock() {
  if (std::exchange(isUnlocking_, true)) return;
  // Nobody can take back a question that the user has been asked, so nobody waits for this thread either.
  std::thread([link = link_, unlock = unlock_] {
    (void)unlock();  // what came of it shows when the files are read again
    const std::lock_guard lock(link->mutex);
    if (link->health == nullptr) return;
    link->health->executor_.post([link] {
      auto* const health = link->health;  // cleared on this thread
      if (health == nullptr) return;
      health->isUnlocking_ = false;
      health->history_.reload();
      health->settings_.reloadPersonalVocabulary();
    });
  }).detach();
}

}  // namespace murmel
