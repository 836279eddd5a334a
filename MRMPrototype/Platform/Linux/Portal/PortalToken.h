#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/SerialQueue.h"
#include "Platform/SecretStore.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// The word of the portal by which it opens a session again without asking. Whoever has it can press keys in
/// the user's stead: it stands in the key ring, and nowhere else. Main thread; nothing waits for the key
/// ring.
class PortalToken {
 public:
  /// `service` names it in the key ring. The references outlive this.
  PortalToken(Executor& executor, SecretStore& secrets, std::string service);
  ~PortalToken();

  /// Nothing where there is none, or the key ring is locked or away.
  void read(std::function<void(std::optional<std::string>)> done);
  /// Each is good for one time: the next takes its place.
  void keep(const std::string& token);
  void forget();

 private:
  Executor& executor_;
  SecretStore& secrets_;
  const std::string service_;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
  SerialQueue queue_;  // last: its jobs use what is above
};

}  // namespace murmel
