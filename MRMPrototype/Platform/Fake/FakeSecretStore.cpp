#include "Platform/Fake/FakeSecretStore.h"

namespace murmel {

std::optional<SecretStatus> FakeSecretStore::failure(const std::string& service, const std::string& account) {
  const int call = calls_++;
  if (service.empty() || account.empty()) return secretStatus::invalidParameter;
  if (failure_) return failure_;
  if (call == failingCall_) return onceStatus_;
  if (locked_) return secretStatus::interactionNotAllowed;
  return std::nullopt;
}

std::expected<void, SecretStatus> FakeSecretStore::add(const std::string& service, const std::string& account,
                                                       const SecretBytes& secret) {
  const std::lock_guard guard(mutex_);
  const auto failed = failure(service, account);
  if (failed && !(addsAllTheSame_ && calls_ - 1 == failingCall_)) return std::unexpected(*failed);
  const bool added = secrets_.emplace(std::pair(service, account), secret.copy()).second;
  if (failed) return std::unexpected(*failed);
  if (!added) return std::unexpected(secretStatus::duplicateItem);
  return {};
}

std::expected<SecretBytes, SecretStatus> FakeSecretStore::find(const std::string& service,
                                                               const std::string& account) {
  const std::lock_guard guard(mutex_);
  if (const auto failed = failure(service, account)) return std::unexpected(*failed);
  const auto found = secrets_.find({service, account});
  if (found == secrets_.end()) return std::unexpected(secretStatus::itemNotFound);
  return found->second.copy();
}

std::expected<void, SecretStatus> FakeSecretStore::remove(const std::string& service,
                                                          const std::string& account) {
  const std::lock_guard guard(mutex_);
  if (const auto failed = failure(service, account)) return std::unexpected(*failed);
  if (secrets_.erase({service, account}) == 0) return std::unexpected(secretStatus::itemNotFound);
  return {};
}

std::expected<void, SecretStatus> FakeSecretStore::unlock() {
  const std::lock_guard guard(mutex_);
  if (failure_) return std::unexpected(*failure_);
  if (locked_ && refusesUnlock_) return std::unexpected(secretStatus::userCanceled);
  locked_ = false;
  return {};
}

void FakeSecretStore::setLocked(bool locked) {
  const std::lock_guard guard(mutex_);
  locked_ = locked;
}

void FakeSecretStore::setUserRefusesUnlock(bool refuses) {
  const std::lock_guard guard(mutex_);
  refusesUnlock_ = refuses;
}

void FakeSecretStore::failWith(std::optional<SecretStatus> status) {
  const std::lock_guard guard(mutex_);
  failure_ = status;
}

void FakeSecretStore::failOnce(int calls, SecretStatus status, bool addsAllTheSame) {
  const std::lock_guard guard(mutex_);
  failingCall_ = calls_ + calls;
  onceStatus_ = status;
  addsAllTheSame_ = addsAllTheSame;
}

std::vector<std::string> FakeSecretStore::accounts(const std::string& service) const {
  const std::lock_guard guard(mutex_);
  std::vector<std::string> found;
  for (const auto& [name, secret] : secrets_) {
    if (name.first == service) found.push_back(name.second);
  }
  return found;
}

int FakeSecretStore::calls() const {
  const std::lock_guard guard(mutex_);
  return calls_;
}

}  // namespace murmel
