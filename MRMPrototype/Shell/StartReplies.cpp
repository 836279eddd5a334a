#include "Shell/StartReplies.h"

#include <utility>

namespace murmel {

StartReplies::StartReplies(Executor& executor, Signal<const DictationState&>& stateDidChange)
    : executor_(executor),
      observer_(stateDidChange.subscribe([this](const DictationState& state) { judge(state); })) {}

void StartReplies::await(CommandReply reply) {
  waiting_.push_back(std::move(reply));
  limitTimer_ = executor_.after(limit, [this] { tell({}); });
}

void StartReplies::judge(const DictationState& state) {
  if (state.isBusy()) {
    tell({});
  } else if (state.which() == DictationState::Case::error) {
    tell(std::unexpected(state.title()));
  }
}

void StartReplies::tell(const CommandOutcome& outcome) {
  limitTimer_.reset();
  for (const auto& reply : std::exchange(waiting_, {})) reply(outcome);
}

}  // namespace murmel
