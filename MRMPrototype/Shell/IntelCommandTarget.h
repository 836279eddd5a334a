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
  /// Tells once what became of it, now or later.
  using LateHandler = std::function<void(CommandReply)>;

  /// Until the handle is destroyed.
  [[nodiscard]] Registration answerLater(IntelCommand command, LateHandler handler) {
    auto kept = std::make_shared<LateHandler>(std::move(handler));
    handlers_[command] = kept;
    return Registration([kept] { *kept = nullptr; });
  }
  [[nodiscard]] Registration answer(IntelCommand command, Handler handler) {
    return answerLater(command,
                       [handler = std::move(handler)](const CommandReply& reply) { reply(handler()); });
  }

  void post(IntelCommand command, CommandReply reply) {
    const auto found = handlers_.find(command);
    if (found == handlers_.end() || !*found->second)
      return reply(std::unexpected("Murmel cannot do that now."));
    const auto handler = *found->second;
    handler(std::move(reply));
  }

 private:
  std::map<IntelCommand, std::shared_ptr<LateHandler>> handlers_;
};

}  // namespace murmel
