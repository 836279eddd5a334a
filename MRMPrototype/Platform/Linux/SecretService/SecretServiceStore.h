#pragma once

#include "Foundation/Async/Clock.h"
#include "Platform/SecretStore.h"

#include <chrono>
#include <functional>
#include <memory>

namespace murmel {

class SecretServiceConnection;

/// The key ring of the desktop.
///
/// The calls run on a thread of their own, and whoever calls waits for at most `limit`. A service that has
/// not answered by then is taken for dead: every call fails soon, while that thread alone waits until the
/// service answers again. So a frozen service costs one wait, not one for every call. Nothing is connected
/// to before the first call.
class SecretServiceStore final : public SecretStore {
 public:
  static constexpr Duration standardLimit = std::chrono::seconds(2);

  explicit SecretServiceStore(Duration limit = standardLimit);
  /// Waits for a call that is under way for at most `limit`.
  ~SecretServiceStore() override;
  SecretServiceStore(const SecretServiceStore&) = delete;
  SecretServiceStore& operator=(const SecretServiceStore&) = delete;

  std::expected<void, SecretStatus> add(const std::string& service, const std::string& account,
                                        const SecretBytes& secret) override;
  std::expected<SecretBytes, SecretStatus> find(const std::string& service,
                                                const std::string& account) override;
  std::expected<void, SecretStatus> remove(const std::string& service, const std::string& account) override;
  std::expected<void, SecretStatus> unlock() override;

 private:
  struct Worker;
  template <class T>
  std::expected<T, SecretStatus> call(
      std::function<std::expected<T, SecretStatus>(SecretServiceConnection&, void* cancellable)> work);

  Duration limit_;
  std::shared_ptr<Worker> worker_;
};

}  // namespace murmel
