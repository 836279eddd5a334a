// The other ends that a dictation can have: thrown away, copied, tried again, or cut short by the end of the
// application.

#include "Dictation/DictationCoordinator.h"
#include "Foundation/Text/Text.h"

#include <utility>

namespace murmel {

namespace {

constexpr Duration cancelledHold = std::chrono::milliseconds(1'500);
constexpr Duration copiedHold = std::chrono::milliseconds(1'500);

}  // namespace

/// False when none is under way.
bool DictationCoordinator::endStart() {
  if (!startRequestInFlight_) return false;
  starts_.cancelAll();
  operationTracker_.advance();
  status_.resumeRecovery();
  return true;
}

void DictationCoordinator::endReopening() {
  changes_.cancelAll();
  services_.audio.discardCapturedAudio();
  operationTracker_.advance();
}

std::expected<void, std::string> DictationCoordinator::cancel() {
  if (endStart()) {
    showCancelled();
    return {};
  }
  if (recording_) {
    stopTimers();
    auto recording = std::move(recording_);
    if (recording->opensAnotherDevice) changes_.cancelAll();
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
  prepareSession(*recording, /*live=*/false);
  const bool whole = recording->kept->replay(
      [&](PendingCapturedAudio audio) { recording->session->append(std::move(audio)); });
  if (!whole) {
    recording.reset();
    showRest();
    return refuse("The kept recording cannot be read any more.");
  }
  lastTranscript_.clear();
  recording->insertionSession = beginInsertionSession(recording->operation);
  status_.show(DictationState::Case::transcribing);
  delivery_.start(deliver(std::move(recording)));
  return {};
}

Task<bool> DictationCoordinator::copyLastTranscript() {
  if (!lastTranscript_.text()) co_return false;
  auto copying = services_.insertion.writePrivateText(*lastTranscript_.text());
  const bool copied = co_await copying;
  // A dictation that is under way keeps the status line: it has an outcome to show.
  if (!copied) {
    warn(notCopiedWarning);
  } else if (!state().isBusy()) {
    status_.showFor(DictationState::Case::copied, copiedHold);
  }
  co_return copied;
}

void DictationCoordinator::sessionChanged() {
  if (endWhereNobodyIs() || !untilUnlock_) return;
  copies_.start(copyAtUnlock(*std::exchange(untilUnlock_, std::nullopt)));
}

Task<void> DictationCoordinator::copyAtUnlock(SpokenText words) {
  const auto underWay = announceDelivery();
  // The screen may have been locked for longer than they are kept.
  if (!lastTranscript_.text()) lastTranscript_.replace(words);
  auto copying = services_.insertion.writePrivateText(std::move(words));
  const bool copied = co_await copying;
  warn(copied ? lockedWarning : notCopiedWarning);
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

Task<void> DictationCoordinator::copyWhenSomebodyIs(SpokenText words) {
  // When the application ends it will not see the unlock.
  if (services_.session.obstacle() && !draining_) {
    if (untilUnlock_) words = SpokenText(untilUnlock_->reveal() + ' ' + words.reveal());
    untilUnlock_ = std::move(words);
    co_return;
  }
  auto copying = services_.insertion.writePrivateText(std::move(words));
  co_await copying;
}

Task<DrainOutcome> DictationCoordinator::drain() {
  if (!std::exchange(draining_, true)) drainOutcome_ = DrainOutcome::done;
  endStart();
  if (recording_) stopAndTranscribe();
  if (untilUnlock_)
    copies_.start(copyAtTheEnd(*std::exchange(untilUnlock_, std::nullopt), DrainOutcome::copied));
  if (deliveries_ > 0) {
    auto [sender, receiver] = makeOneShot<bool>();
    drainWaiters_.push_back(std::move(sender));
    co_await receiver;
  }
  co_return drainOutcome_;
}

Task<void> DictationCoordinator::copyAtTheEnd(SpokenText words, DrainOutcome outcome) {
  const auto underWay = announceDelivery();
  auto copying = services_.insertion.writePrivateText(std::move(words));
  const bool copied = co_await copying;
  drainOutcome_ = copied ? outcome : DrainOutcome::notCopied;
}

void DictationCoordinator::hurryDrain() {
  if (delivering_ != nullptr && operationTracker_.isCurrent(delivering_->operation)) {
    auto& recording = *delivering_;
    const auto said = recording.text ? recording.text->reveal() : wordsSoFar(recording);
    // What live insertion has brought to the application need not be pasted once more.
    const auto missing =
        recording.live ? std::string(text::trimmed(recording.live->remaining().reveal())) : said;
    if (!recording.text) drainOutcome_ = DrainOutcome::lost;
    if (!missing.empty()) {
      const auto outcome = recording.text ? DrainOutcome::copied : DrainOutcome::copiedPart;
      copies_.start(copyAtTheEnd(SpokenText(missing), outcome));
    }
    // The application may go on after all.
    if (!recording.text) {
      retryBuffer_.keep(std::move(recording.kept));
      if (!said.empty()) lastTranscript_.replace(SpokenText(said));
    }
    if (!said.empty() && services_.settings.historyEnabled())
      keepInHistory(SpokenText(said), {}, recording.text ? 0 : 1);
  }
  operationTracker_.advance();
  delivery_.cancelAll();
  if (state().isBusy()) showRest();
}

void DictationCoordinator::admit() {
  draining_ = false;
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

Registration DictationCoordinator::announceDelivery(Recording* recording) {
  if (recording != nullptr) delivering_ = recording;
  ++deliveries_;
  return Registration([this, recording] {
    if (recording != nullptr && delivering_ == recording) delivering_ = nullptr;
    if (--deliveries_ == 0) answerDrain();
  });
}

void DictationCoordinator::answerDrain() {
  // Posted: whoever waits may destroy what is being left here.
  for (auto& waiter : std::exchange(drainWaiters_, {}))
    services_.executor.post([waiter = std::move(waiter)]() mutable { waiter.send(true); });
}

}  // namespace murmel
