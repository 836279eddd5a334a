#pragma once

#include "Foundation/Registration.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace murmel {

/// Tells any number of subscribers that something happened. Main thread only.
///
/// A subscriber may subscribe, unsubscribe or destroy the signal while it is being told: a subscription
/// withdrawn during an emission is not called any more, one added during it is called from the next one on.
template <class... Arguments>
class Signal {
 public:
  using Handler = std::function<void(Arguments...)>;

  [[nodiscard]] Registration subscribe(Handler handler) {
    const auto key = state_->next++;
    state_->handlers.emplace(key, std::make_shared<Handler>(std::move(handler)));
    return Registration([weak = std::weak_ptr(state_), key] {
      if (auto state = weak.lock()) state->handlers.erase(key);
    });
  }

  void emit(Arguments... arguments) const {
    const auto state = state_;
    const auto end = state->next;
    for (auto entry = state->handlers.begin(); entry != state->handlers.end() && entry->first < end;) {
      const auto key = entry->first;
      const auto handler = entry->second;
      (*handler)(arguments...);
      entry = state->handlers.upper_bound(key);
    }
  }

  [[nodiscard]] bool hasSubscribers() const { return !state_->handlers.empty(); }

 private:
  struct State {
    std::uint64_t next = 0;
    std::map<std::uint64_t, std::shared_ptr<Handler>> handlers;
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace murmel
