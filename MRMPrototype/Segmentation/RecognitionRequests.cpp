#include "Segmentation/RecognitionRequests.h"

#include "Foundation/Async/Timers.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace murmel {

namespace {

using namespace std::chrono_literals;

/// The pauses before the second and the further tries of the same audio. One worker that died is no reason to
/// wait; one that cannot start may need a moment.
constexpr std::array<Duration, 4> pauses{0s, 500ms, 1s, 2s};
/// How often audio is tried while the workers fail on everything.
constexpr int attemptsInDoubt = 2;
/// No further try after this much waiting for the same audio: a worker that hangs will hang again.
constexpr Duration patience = 60s;
/// So many failures in a row, with the user waiting, and the rest is not tried any more.
constexpr int hopelessAfter = 2;

/// A request is slow when it takes longer than its audio lasts, but short ones are given some time.
constexpr double shortestSlowSeconds = 5;

/// Only a worker that failed can be better the next time.
bool worthAnotherTry(const MRMError& error) {
  return error.which() == MRMError::Case::workerFailed;
}

RecognitionOutcome outcomeOf(Result<TranscriptionResult> answer) {
  RecognitionOutcome outcome;
  if (!answer) {
    const bool heard = answer.error().which() == MRMError::Case::noSpeech;
    outcome.kind = heard ? RecognitionOutcome::Kind::empty : RecognitionOutcome::Kind::failed;
    if (!heard) outcome.error = answer.error();
    return outcome;
  }
  const auto trimmed = text::trimmed(answer->text.reveal());
  outcome.kind = trimmed.empty() ? RecognitionOutcome::Kind::empty : RecognitionOutcome::Kind::text;
  outcome.text = SpokenText(std::string(trimmed));
  outcome.providerID = answer->providerID;
  return outcome;
}

}  // namespace

RecognitionRequests::RecognitionRequests(Executor& executor, const Clock& clock,
                                         std::shared_ptr<TranscriptionProvider> provider,
                                         std::optional<std::string> language)
    : executor_(executor), clock_(clock), provider_(std::move(provider)), language_(std::move(language)) {}

int RecognitionRequests::attempts() const {
  if (failuresInARow_ == 0) return static_cast<int>(pauses.size()) + 1;
  return hurried_ && failuresInARow_ >= hopelessAfter ? 0 : attemptsInDoubt;
}

void RecognitionRequests::hopeAgain() {
  failuresInARow_ = std::min(failuresInARow_, hopelessAfter - 1);
}

Task<RecognitionOutcome> RecognitionRequests::recogniseOnce(CapturedAudio audio) {
  if (onRequest) onRequest();
  const auto slowAfter = secondsToDuration(std::max(shortestSlowSeconds, audio.duration()));
  bool slow = false;
  const auto timer = executor_.after(slowAfter, [this, &slow] {
    slow = true;
    if (onSlow) onSlow(true);
  });
  auto request = provider_->transcribe(std::move(audio), language_);
  Result<TranscriptionResult> answer = co_await request;
  if (slow && onSlow) onSlow(false);
  RecognitionOutcome outcome = outcomeOf(std::move(answer));
  if (outcome.kind != RecognitionOutcome::Kind::failed) failuresInARow_ = 0;
  co_return outcome;
}

Task<RecognitionOutcome> RecognitionRequests::recognise(CapturedAudio audio) {
  const auto begin = clock_.now();
  RecognitionOutcome outcome;
  outcome.kind = RecognitionOutcome::Kind::failed;
  outcome.error = lastError_;
  const int most = attempts();
  for (int attempt = 0; attempt < most; ++attempt) {
    if (attempt > 0) {
      auto pause = sleepFor(executor_, pauses[static_cast<std::size_t>(attempt - 1)]);
      co_await pause;
    }
    auto request = recogniseOnce(audio);
    outcome = co_await request;
    if (outcome.kind != RecognitionOutcome::Kind::failed) co_return outcome;
    if (!worthAnotherTry(*outcome.error) || clock_.now() - begin >= patience) break;
  }
  ++failuresInARow_;
  lastError_ = outcome.error;
  co_return outcome;
}

}  // namespace murmel
