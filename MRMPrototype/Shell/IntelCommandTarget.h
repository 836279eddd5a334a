#pragma once

#include "Foundation/Async/Signal.h"
#include "Shell/IntelCommand.h"

#include <functional>
#include <map>
#include <utility>

namespace murmel {

/// Where menu items and remote commands arrive; the controllers of the application observe what concerns
/// them. Main thread.
class IntelCommandTarget {
 public:
  [[nodiscard]] Registration observe(IntelCommand command, std::function<void()> handler) {
    return signals_[command].subscribe(std::move(handler));
  }

  /// False when nobody observes the command.
  bool post(IntelCommand command) {
    const auto found = signals_.find(command);
    if (found == signals_.end() || !found->second.hasSubscribers()) return false;
    found->second.emit();
    return true;
  }

 private:
  std::map<IntelCommand, Signal<>> signals_;
};

}  // namespace murmel
