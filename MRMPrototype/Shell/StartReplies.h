#pragma once

#include "Dictation/DictationState.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "Shell/CommandOutcome.h"

#include <vector>

namespace murmel {

/// Tells those who asked for a dictation whether it began: a start takes its time, and may fail. Main thread.
class StartReplies {
 public:
  /// A microphone that takes longer than this is still being opened: the request was heard.
  static constexpr Duration limit = std::chrono::milliseconds(1'500);

  StartReplies(Executor& executor, Signal<const DictationState&>& stateDidChange);

  /// To be called right before the start. `reply` comes when the microphone is open, when the start has
  /// failed, or after `limit`.
  void await(CommandReply reply);

 private:
  void judge(const DictationState& state);
  void tell(const CommandOutcome& outcome);

  Executor& executor_;
  std::vector<CommandReply> waiting_;
  Registration observer_;
  Registration limitTimer_;
};

}  // namespace murmel
