#include "Segmentation/RecognitionRequests.h"

#include "Foundation/Async/Timers.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

/// A request is slow when it takes longer than its audio lasts, but short ones are given some time.
constexpr double shortestSlowSeconds = 5;

/// Nothing when no recogniser has heard the audio to its end.
std::optional<RecognitionOutcome> heard(const Result<TranscriptionResult>& answer) {
  RecognitionOutcome outcome;
  if (!answer) {
    if (answer.error().which() != MRMError::Case::noSpeech) return std::nullopt;
    return outcome;
  }
  const auto trimmed = text::trimmed(answer->text.reveal());
  outcome.kind = trimmed.empty() ? RecognitionOutcome::Kind::empty : RecognitionOutcome::Kind::text;
  outcome.text = SpokenText(std::string(trimmed));
  outcome.providerID = answer->providerID;
  return outcome;
}

}  // namespace

RecognitionRequests::RecognitionRequests(Executor& executor, const Clock& clock, RecognitionEngines engines,
                                         std::optional<std::string> language)
    : executor_(executor), clock_(clock), engines_(std::move(engines)), language_(std::move(language)) {}

Task<Result<TranscriptionResult>> RecognitionRequests::ask(std::shared_ptr<TranscriptionProvider> engine,
                                                           CapturedAudio audio) {
  if (onRequest) onRequest();
  const auto slowAfter = secondsToDuration(std::max(shortestSlowSeconds, audio.duration()));
  bool slow = false;
  const auto timer = executor_.after(slowAfter, [this, &slow] {
    slow = true;
    if (onSlow) onSlow(true);
  });
  auto request = engine->transcribe(std::move(audio), language_);
  Result<TranscriptionResult> answer = co_await request;
  if (slow && onSlow) onSlow(false);
  co_return answer;
}

Task<std::optional<RecognitionOutcome>> RecognitionRequests::recogniseOnce(CapturedAudio audio) {
  auto request = engines_.first->transcribe(std::move(audio), language_);
  const Result<TranscriptionResult> answer = co_await request;
  co_return heard(answer);
}

Task<RecognitionRequests::Attempt> RecognitionRequests::attempt(std::shared_ptr<TranscriptionProvider> engine,
                                                                CapturedAudio audio, bool othersMayGoFirst,
                                                                RetryPolicy::Tries* tries) {
  Attempt attempt;
  // Apart from the request, so that an engine that does not come up is told from audio that kills it.
  auto preparation = engine->prepare();
  const Result<void> ready = co_await preparation;
  if (!ready) {
    attempt.error = ready.error();
    attempt.step = policy_.engineFailed(*tries, *attempt.error, clock_.now());
    co_return attempt;
  }
  const auto begin = clock_.now();
  auto request = ask(std::move(engine), std::move(audio));
  const Result<TranscriptionResult> answer = co_await request;
  attempt.heard = heard(answer);
  if (attempt.heard) {
    if (!tries->onNextEngine) policy_.answered();
    co_return attempt;
  }
  attempt.error = answer.error();
  const auto now = clock_.now();
  attempt.step = attempt.error->which() == MRMError::Case::workerFailed
                     ? policy_.audioFailed(*tries, now - begin, othersMayGoFirst, now)
                     : policy_.engineFailed(*tries, *attempt.error, now);
  co_return attempt;
}

Task<RecognitionOutcome> RecognitionRequests::recognise(CapturedAudio audio, bool othersMayGoFirst,
                                                        RetryPolicy::Tries tries) {
  using Kind = RetryPolicy::Step::Kind;
  auto engine = engines_.first;
  while (true) {
    RetryPolicy::Step step = RetryPolicy::lastResort(tries);
    if (tries.onNextEngine || !policy_.isHopeless(clock_.now())) {
      auto trying = attempt(engine, audio, othersMayGoFirst, &tries);
      Attempt tried = co_await trying;
      if (tried.heard) co_return *std::move(tried.heard);
      lastError_ = tried.error;
      step = tried.step;
    }
    if (step.kind == Kind::again) {
      auto pause = sleepFor(executor_, step.pause);
      co_await pause;
      continue;
    }
    if (step.kind == Kind::nextEngine && engines_.next) engine = engines_.next();
    if (step.kind == Kind::nextEngine && engines_.next && engine) {
      tries.onNextEngine = true;
      continue;
    }
    RecognitionOutcome outcome;
    outcome.kind =
        step.kind == Kind::setAside ? RecognitionOutcome::Kind::aside : RecognitionOutcome::Kind::failed;
    outcome.error = lastError_;
    outcome.tries = tries;
    co_return outcome;
  }
}

}  // namespace murmel
