#include "Shell/StatusPublisher.h"

#include <utility>

namespace murmel {

namespace {

std::string nameOf(DictationState::Case which) {
  using enum DictationState::Case;
  switch (which) {
    case error:
      return "error";
    case warning:
      return "warning";
    case ready:
      return "ready";
    case listening:
      return "listening";
    case listeningBehind:
      return "listeningBehind";
    case transcribing:
      return "transcribing";
    case success:
    case insertedAndClipboardRestored:
    case insertedAndTranscriptKept:
    case insertionSentClipboardChanged:
    case copied:
      return "delivered";
  }
  std::unreachable();
}

}  // namespace

StatusPublisher::StatusPublisher(OverlayController& shown, const Clock& clock,
                                 std::function<std::string()> engine)
    : shown_(shown), clock_(clock), engine_(std::move(engine)) {}

void StatusPublisher::update(const DictationState& state) {
  if (state.isRecording() && !state_.isRecording()) recordingSince_ = clock_.now();
  if (!state.isRecording()) level_ = 0;
  state_ = state;
  shown_.update(state);
  didChange_.emit();
}

void StatusPublisher::setLevel(double level) {
  level_ = level;
  shown_.setLevel(level);
  if (clock_.now() - levelToldAt_ < levelInterval) return;
  levelToldAt_ = clock_.now();
  didChange_.emit();
}

StatusReport StatusPublisher::report() const {
  return {
      .state = nameOf(state_.which()),
      .message = state_.title(),
      .engine = engine_(),
      .level = level_,
      .elapsed = state_.isRecording() ? durationToSeconds(clock_.now() - recordingSince_) : 0,
  };
}

}  // namespace murmel
