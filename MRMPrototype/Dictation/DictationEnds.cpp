// The other ends that a dictation can have: thrown away, tried again, or cut short by the end of the
// application.

#include "Dictation/DictationCoordinator.h"
#include "Foundation/Text/Text.h"

#include <utility>

namespace murmel {

namespace {

constexpr Duration cancelledHold = std::chrono::milliseconds(1'500);

}  // namespace

std::expected<void, std::string> DictationCoordinator::cancel() {
  if (endStart()) {
    showCancelled();
    return {};
  }
  if (recording_) {
    stopTimers();
    auto recording = std::move(recording_);
    operationTracker_.advance();
    const auto captured = services_.audio.stop();
    if (captured && recording->kept) recording->kept->append(*captured);
    retryBuffer_.keep(std::move(recording->kept));
    recording.reset();
    showCancelled();
    return {};
  }
  if (delivering_ != nullptr && !delivering_->text) {
    retryBuffer_.keep(std::move(delivering_->kept));
    operationTracker_.advance();
    delivery_.cancelAll();
    showCancelled();
    return {};
  }
  return std::unexpected(std::string(delivering_ != nullptr ? "The words are being inserted already."
                                                            : "Nothing is being dictated."));
}

void DictationCoordinator::showCancelled() {
  status_.showFor(DictationState::warning("Cancelled"), cancelledHold);
}

std::expected<void, std::string> DictationCoordinator::retry() {
  const auto refuse = [](const char* why) { return std::unexpected(std::string(why)); };
  if (draining_) return refuse("Murmel is about to end.");
  if (startRequestInFlight_ || state().isBusy()) return refuse("A dictation is under way.");
  if (!retryBuffer_.available()) return refuse("There is no failed or cancelled dictation to try again.");
  auto updateActivity = beginUpdateActivity();
  if (!updateActivity) return refuse("Finish the app update before recording.");
  if (!ensureRecogniser()) return std::unexpected(state().title());

  auto recording = std::make_unique<Recording>();
  recording->operation = operationTracker_.advance();
  recording->updateActivity = std::move(updateActivity);
  recording->runtimePriority = runtimePriority_.hold();
  recording->kept = retryBuffer_.take();
  status_.cancelRecovery();
  lastTranscript_.clear();
  prepareSession(*recording, /*live=*/false);
  const bool whole = recording->kept->replay(
      [&](PendingCapturedAudio audio) { recording->session->append(std::move(audio)); });
  if (!whole) {
    recording.reset();
    showRest();
    return refuse("The kept recording cannot be read any more.");
  }
  recording->insertionSession = beginInsertionSession(recording->operation);
  status_.show(DictationState::Case::transcribing);
  delivery_.start(deliver(std::move(recording)));
  return {};
}

void DictationCoordinator::sessionChanged() {
  if (endWhereNobodyIs() || !untilUnlock_) return;
  copyWhenSomebodyIs(*std::exchange(untilUnlock_, std::nullopt));
  status_.showTransientWarning(lockedWarning);
}

/// Whoever comes to the desktop next must not find it listening, nor find words where somebody else's
/// session had them typed.
bool DictationCoordinator::endWhereNobodyIs() {
  if (!services_.session.obstacle()) return false;
  endStart();
  if (recording_) {
    recording_->clipboardOnly = true;
    stopAndTranscribe();
  }
  return true;
}

void DictationCoordinator::copyWhenSomebodyIs(SpokenText words) {
  if (services_.session.obstacle()) {
    untilUnlock_ = std::move(words);
  } else {
    services_.insertion.writePrivateText(words);
  }
}

Task<DrainOutcome> DictationCoordinator::drain() {
  draining_ = true;
  endStart();
  if (recording_) stopAndTranscribe();
  if (deliveries_ > 0) {
    auto [sender, receiver] = makeOneShot<bool>();
    drainWaiters_.push_back(std::move(sender));
    co_await receiver;
  }
  if (untilUnlock_) services_.insertion.writePrivateText(*std::exchange(untilUnlock_, std::nullopt));
  co_return drainOutcome_;
}

void DictationCoordinator::hurryDrain() {
  if (delivering_ != nullptr && operationTracker_.isCurrent(delivering_->operation)) {
    const auto& recording = *delivering_;
    const auto said = recording.text ? recording.text->reveal() : wordsSoFar(recording);
    // What live insertion has brought to the application need not be pasted once more.
    const auto missing =
        recording.live ? std::string(text::trimmed(recording.live->remaining().reveal())) : said;
    if (!missing.empty()) services_.insertion.writePrivateText(SpokenText(missing));
    if (!said.empty() && services_.settings.historyEnabled())
      keepInHistory(SpokenText(said), {}, recording.text ? 0 : 1);
    drainOutcome_ = recording.text    ? DrainOutcome::copied
                    : missing.empty() ? DrainOutcome::lost
                                      : DrainOutcome::copiedPart;
  }
  operationTracker_.advance();
  delivery_.cancelAll();
  answerDrain();
}

void DictationCoordinator::admit() {
  draining_ = false;
  drainOutcome_ = DrainOutcome::done;
}

std::string DictationCoordinator::wordsSoFar(const Recording& recording) const {
  if (recording.live) return std::string(text::trimmed(recording.live->text().reveal()));
  std::string words;
  for (const auto& piece : recording.session->recognisedSoFar()) {
    if (!words.empty()) words += ' ';
    words += piece.text.reveal();
  }
  return std::string(text::trimmed(services_.cleanUp.clean(std::move(words))));
}

Registration DictationCoordinator::announceDelivery(Recording& recording) {
  delivering_ = &recording;
  ++deliveries_;
  return Registration([this, mine = &recording] {
    if (delivering_ == mine) delivering_ = nullptr;
    if (--deliveries_ == 0) answerDrain();
  });
}

void DictationCoordinator::answerDrain() {
  // Posted: whoever waits may destroy what is being left here.
  for (auto& waiter : std::exchange(drainWaiters_, {}))
    services_.executor.post([waiter = std::move(waiter)]() mutable { waiter.send(true); });
}

}  // namespace murmel
