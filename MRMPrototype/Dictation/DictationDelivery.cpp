// The second half of the coordinator: from the end of a recording to the delivered text.

#include "Dictation/DictationCoordinator.h"
#include "Foundation/Text/Text.h"

#include <utility>

namespace murmel {

namespace {

constexpr Duration outcomeHold = std::chrono::milliseconds(1'500);

std::string joined(const std::vector<std::string>& sentences) {
  std::string text;
  for (const auto& sentence : sentences) {
    if (!text.empty()) text += ' ';
    text += sentence;
  }
  return text;
}

}  // namespace

Task<void> DictationCoordinator::deliver(std::unique_ptr<Recording> recording) {
  const auto operation = recording->operation;
  const auto underWay = announceDelivery(recording.get());
  auto finishing = recording->session->finish();
  const Result<DictationSessionResult> result = co_await finishing;
  if (!operationTracker_.isCurrent(operation)) co_return;
  if (!result) {
    // Where nobody spoke, nobody would want to try again.
    if (result.error().which() != MRMError::Case::noSpeech) {
      retryBuffer_.keep(std::move(recording->kept));
      drainOutcome_ = DrainOutcome::lost;
    }
    showFailure(result.error(), *recording);
    co_return;
  }

  SpokenText text = finalText(*recording, *result);
  if (text.empty()) {
    showFailure(MRMError(MRMError::Case::noSpeech), *recording);
    co_return;
  }
  recording->text = text;
  lastTranscript_.replace(text);
  if (result->failedPieces > 0) retryBuffer_.keep(std::move(recording->kept));

  auto delivering = deliverText(*recording, text);
  const std::optional<TextDeliveryResult> delivered = co_await delivering;
  if (!delivered) co_return;
  if (*delivered == TextDeliveryResult::copiedFallback) {
    const bool copied = services_.insertion.lastCopySucceeded();
    drainOutcome_ = copied ? DrainOutcome::copied : DrainOutcome::notCopied;
    // The words themselves are kept for two minutes only.
    if (!copied) retryBuffer_.keep(std::move(recording->kept));
  }

  logSummary(*recording);
  if (untilUnlock_) {
    showRest();
  } else {
    showOutcome(*delivered, collectWarnings(*recording, *result, *delivered));
  }
  if (services_.settings.historyEnabled())
    keepInHistory(std::move(text), result->providerID, result->failedPieces);
}

SpokenText DictationCoordinator::finalText(const Recording& recording,
                                           const DictationSessionResult& result) const {
  // Live phrases have been cleaned one by one.
  const auto text =
      recording.live ? recording.live->text().reveal() : services_.cleanUp.clean(result.text.reveal());
  return SpokenText(std::string(text::trimmed(text)));
}

Task<std::optional<TextDeliveryResult>> DictationCoordinator::deliverText(Recording& recording,
                                                                          SpokenText text) {
  auto finishingCleanUp = services_.insertion.finishPasteCleanup();
  const std::optional<TextDeliveryResult> cleanedUp = co_await finishingCleanUp;
  if (!operationTracker_.isCurrent(recording.operation)) co_return std::nullopt;

  if (services_.session.obstacle()) recording.clipboardOnly = true;
  // Every phrase was inserted before: there is nothing to copy.
  if (recording.live && !recording.live->blocked()) recording.clipboardOnly = false;
  if (recording.clipboardOnly) {
    if (recording.live) text = SpokenText(std::string(text::trimmed(recording.live->remaining().reveal())));
    auto copying = copyWhenSomebodyIs(std::move(text));
    co_await copying;
    if (!operationTracker_.isCurrent(recording.operation)) co_return std::nullopt;
    co_return TextDeliveryResult::copiedFallback;
  }
  pasteOwner_ = recording.operation;
  if (!recording.live) {
    auto inserting = services_.insertion.insertOrCopy(std::move(text), /*liveOnly=*/false);
    const TextDeliveryResult inserted = co_await inserting;
    if (!operationTracker_.isCurrent(recording.operation)) co_return std::nullopt;
    co_return inserted;
  }
  if (recording.live->blocked()) {
    const auto remaining = recording.live->remaining().reveal();
    auto copying = services_.insertion.writePrivateText(SpokenText(std::string(text::trimmed(remaining))));
    co_await copying;
    if (!operationTracker_.isCurrent(recording.operation)) co_return std::nullopt;
    co_return TextDeliveryResult::copiedFallback;
  }
  // Every phrase is in the application already; what is left to say is how the clipboard fared.
  co_return cleanedUp.value_or(services_.insertion.lastResult().value_or(TextDeliveryResult::insertionSent));
}

Task<bool> DictationCoordinator::insertLivePhrase(OperationIdentifier operation, SpokenText phrase) {
  auto finishingCleanUp = services_.insertion.finishPasteCleanup();
  co_await finishingCleanUp;
  // The target of now is another dictation's.
  if (!operationTracker_.isCurrent(operation) || services_.session.obstacle()) co_return false;
  pasteOwner_ = operation;
  auto inserting = services_.insertion.insertLiveSegment(std::move(phrase));
  const bool inserted = co_await inserting;
  co_return inserted;
}

std::vector<std::string> DictationCoordinator::collectWarnings(const Recording& recording,
                                                               const DictationSessionResult& result,
                                                               TextDeliveryResult delivered) const {
  std::vector<std::string> warnings;
  if (result.failedPieces > 0) warnings.emplace_back("Part of the recording was not recognized.");
  if (recording.deviceChanged) {
    warnings.emplace_back("Audio configuration changed. Recording stopped; captured audio processed.");
  }
  if (recording.memoryWasShort)
    warnings.emplace_back("Memory is running out. Recording stopped; captured audio processed.");
  if (delivered == TextDeliveryResult::copiedFallback && !services_.insertion.lastCopySucceeded()) {
    warnings.emplace_back(notCopiedWarning);
  } else if (recording.clipboardOnly) {
    warnings.emplace_back(lockedWarning);
  } else if (recording.live && recording.live->blocked()) {
    warnings.push_back(message(services_.insertion.lastBlock().value_or(LiveInsertionBlock::unknown)));
  }
  // The words are the recogniser's in any case; this says why they look like it.
  if (result.refinementFailure) warnings.push_back(result.refinementFailure->localizedDescription());
  if (!services_.insertion.clipboardWasKept()) warnings.emplace_back("Your clipboard could not be kept.");
  return warnings;
}

void DictationCoordinator::pasteSettled(PasteSettlement settlement) {
  const auto told = warning(settlement);
  if (told && state().isBusy()) {
    // A phrase of the dictation under way: its end says that insertion was stopped, and copies the rest.
    if (operationTracker_.isCurrent(pasteOwner_)) return;
    onNotice_.emit("The application did not take the last dictation. It is on the clipboard — press ⌘V.");
  } else if (told) {
    status_.showTransientWarning(*told);
  } else if (state().which() == DictationState::Case::success) {
    // "Inserted" is on show: say what has become of the clipboard for as long as that is to be seen.
    status_.showFor(DictationState::delivered(deliveryResult(settlement)), outcomeHold);
  }
}

void DictationCoordinator::warn(const std::string& sentence) {
  if (state().isBusy()) {
    onNotice_.emit(sentence);
  } else {
    status_.showTransientWarning(sentence);
  }
}

void DictationCoordinator::showOutcome(TextDeliveryResult result, const std::vector<std::string>& warnings) {
  if (warnings.empty()) {
    status_.showFor(DictationState::delivered(result), outcomeHold);
  } else {
    status_.showTransientWarning(joined(warnings));
  }
}

void DictationCoordinator::showFailure(const MRMError& error, const Recording& recording) {
  logSummary(recording);
  if (error.which() != MRMError::Case::noSpeech) {
    status_.showTransientError(error.localizedDescription());
  } else if (recording.deviceChanged) {
    status_.showTransientError("Audio configuration changed. Recording stopped; no speech was recognized.");
  } else if (recording.memoryWasShort) {
    status_.showTransientError("Memory is running out. Recording stopped; no speech was recognized.");
  } else {
    showRest();
  }
}

void DictationCoordinator::logSummary(const Recording& recording) const {
  // Without live insertion a refused paste is no block: the text was copied instead.
  const bool liveStopped = recording.live && recording.live->blocked();
  const auto blocked = liveStopped ? services_.insertion.lastBlock() : std::nullopt;
  const auto line = recording.session->diagnostics().notice(blocked, recording.deviceChanged);
  services_.diagnostic.line(LogLevel::notice, PublicText::declared(line));
}

void DictationCoordinator::keepInHistory(SpokenText text, const std::string& providerID,
                                         int unrecognizedParts) {
  HistoryEntry entry;
  entry.id = Uuid::random();
  entry.createdAt = historyDate(services_.clock.wallNow());
  entry.text = std::move(text);
  entry.providerID = providerID;
  entry.language = services_.settings.historyLanguageLabel();
  entry.unrecognizedParts = unrecognizedParts;
  services_.history.add(std::move(entry));
}

}  // namespace murmel
