#pragma once

#include "Foundation/Registration.h"
#include "Shell/CommandOutcome.h"
#include "Shell/IntelCommand.h"

#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace murmel {

/// Where menu items and remote commands arrive; the controllers of the application answer what concerns
/// them, one each. Main thread.
class IntelCommandTarget {
 public:
  using Handler = std::function<CommandOutcome()>;

  /// Until the handle is destroyed.
  [[nodiscard]] Registration answer(IntelCommand command, Handler handler) {
    auto kept = std::make_shared<Handler>(std::move(handler));
    handlers_[command] = kept;
    return Registration([kept] { *kept = nullptr; });
  }

  CommandOutcome post(IntelCommand command) {
    const auto found = handlers_.find(command);
    if (found == handlers_.end() || !*found->second) return std::unexpected("Murmel cannot do that now.");
    const auto handler = *found->second;
    return handler();
  }

 private:
  std::map<IntelCommand, std::shared_ptr<Handler>> handlers_;
};

}  // namespace murmel
