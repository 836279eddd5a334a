#include "Foundation/Async/Timers.h"

#include "Foundation/Async/OneShot.h"

namespace murmel {

Task<void> sleepFor(Executor& executor, Duration delay) {
  auto [sender, receiver] = makeOneShot<std::monostate>();
  auto fire = [sender = std::move(sender)]() mutable { sender.send({}); };
  const auto timer = executor.after(delay, std::move(fire));
  co_await receiver;
}

RepeatingTimer::RepeatingTimer(Executor& executor, Duration interval, std::function<void()> onTick)
    : state_(std::make_shared<State>(State{executor, interval, std::move(onTick), {}})) {
  arm(state_);
}

void RepeatingTimer::arm(const std::shared_ptr<State>& state) {
  state->pending = state->executor.after(state->interval, [weak = std::weak_ptr(state)] {
    const auto alive = weak.lock();
    if (!alive) return;
    arm(alive);
    alive->onTick();
  });
}

}  // namespace murmel
