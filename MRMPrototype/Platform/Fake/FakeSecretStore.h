#pragma once

#include "Platform/SecretStore.h"

#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace murmel {

/// A key ring in memory that can be locked, taken away or made to fail. Thread-safe.
class FakeSecretStore final : public SecretStore {
 public:
  std::expected<void, SecretStatus> add(const std::string& service, const std::string& account,
                                        const SecretBytes& secret) override;
  std::expected<SecretBytes, SecretStatus> find(const std::string& service,
                                                const std::string& account) override;
  std::expected<void, SecretStatus> remove(const std::string& service, const std::string& account) override;
  std::expected<void, SecretStatus> unlock() override;

  void setLocked(bool locked);
  void setUserRefusesUnlock(bool refuses);
  /// Every call fails with this status until it is taken back.
  void failWith(std::optional<SecretStatus> status);
  /// The call after `calls` further ones fails with `status`, once. A failing `add` may have kept the secret
  /// all the same, as a store that answers too late does.
  void failOnce(int calls, SecretStatus status, bool addsAllTheSame = false);

  [[nodiscard]] std::vector<std::string> accounts(const std::string& service) const;
  [[nodiscard]] int calls() const;

 private:
  /// Why the present call fails, if it does.
  std::optional<SecretStatus> failure(const std::string& service, const std::string& account);

  mutable std::mutex mutex_;
  std::map<std::pair<std::string, std::string>, SecretBytes> secrets_;
  bool locked_ = false;
  bool refusesUnlock_ = false;
  std::optional<SecretStatus> failure_;
  int calls_ = 0;
  int failingCall_ = -1;
  SecretStatus onceStatus_ = secretStatus::success;
  bool addsAllTheSame_ = false;
};

}  // namespace murmel
