// One paste, from the last look at the target to the wait for its read.

#include "Delivery/TextInsertionService.h"
#include "Foundation/Async/OneShot.h"

#include <utility>

namespace murmel {

namespace {

/// Whoever holds modifiers for so long is not about to let go of them.
constexpr Duration longHold = std::chrono::milliseconds(400);

}  // namespace

struct TextInsertionService::PasteOrder {
  RunningApplication application;
  PasteMethod method;
  FocusedFieldKind field = FocusedFieldKind::notTold;
};

Task<TextDeliveryResult> TextInsertionService::dispatchPasteOrCopy(
    SpokenText text, std::optional<RunningApplication> application, bool liveOnly) {
  lastBlock_.reset();
  auto looking = fieldOf(application);
  const auto field = co_await looking;
  const auto method = application ? methodFor(*application) : std::nullopt;
  const auto refused = firstPasteBlock(observe(application, method.has_value(), field));
  if (refused || !application || !method) {
    auto refusing = refuse(refused.value_or(LiveInsertionBlock::unknown), std::move(text), liveOnly);
    const auto result = co_await refusing;
    co_return result;
  }
  const PasteOrder order{*application, *method, field};
  auto freeing = awaitFreeKeys();
  const bool wereFree = co_await freeing;

  auto putting = putForTarget(spacing_.spaced(text, application->window), order);
  auto paste = co_await putting;
  if (!paste) {
    auto refusing = refuse(LiveInsertionBlock::unknown, std::move(text), liveOnly);
    const auto result = co_await refusing;
    co_return result;
  }
  auto preparing = awaitReadiness(*paste->reads, order);
  co_await preparing;
  // All this may have taken its time. Whoever presses the shortcut once more has its modifiers down and its
  // key to come: without them that would be typed.
  if (wereFree) {
    auto freeingAgain = awaitFreeKeys();
    co_await freeingAgain;
  }
  const auto block = pressKeys(order, paste->postedAt);
  if (block) {
    auto takingBack = takeBack(*block, std::move(paste->transactions), std::move(text), liveOnly);
    const auto result = co_await takingBack;
    co_return result;
  }
  spacing_.posted(text, application->window);
  auto settling = settlePosted(*std::move(paste));
  const auto result = co_await settling;
  co_return result;
}

Task<FocusedFieldKind> TextInsertionService::fieldOf(std::optional<RunningApplication> application) {
  if (!application || desktop_.focusedField == nullptr) co_return FocusedFieldKind::notTold;
  auto asking = desktop_.focusedField->kind(*application);
  const auto kind = co_await asking;
  co_return kind;
}

Task<bool> TextInsertionService::awaitFreeKeys() {
  const auto askedAt = desktop_.clock.now();
  auto releasing = desktop_.keyboard.awaitReleasedModifiers();
  co_await releasing;
  co_return desktop_.clock.now() - askedAt < longHold;
}

Task<std::optional<SentPaste>> TextInsertionService::putForTarget(SpokenText text, PasteOrder order) {
  const auto reader = pasteReader(order.application);
  auto reads = std::make_unique<TargetReads>(reader);
  auto opening = clipboards_.open(std::move(text), reader, order.method.usesPrimary);
  auto transactions = co_await opening;
  if (transactions.empty()) {
    logger_.event(LogLevel::error, "clipboard_unavailable");
    co_return std::nullopt;
  }
  for (const auto& transaction : transactions)
    reads->follow(transaction.pasteboard(), transaction.ownership().changeCount);
  SentPaste paste{std::move(transactions), std::move(reads), {}, order.application.bundleIdentifier};
  paste.hasField = order.field != FocusedFieldKind::none;
  co_return std::optional(std::move(paste));
}

Task<void> TextInsertionService::awaitReadiness(TargetReads& reads, PasteOrder order) {
  const auto& name = order.application.bundleIdentifier;
  const bool looksFirst =
      order.method.looksFirst || order.application.proxyLooksFirst || lookers_.contains(name);
  const auto copiedAt = desktop_.clock.now();
  while (true) {
    const auto left = PasteReadiness::ready(copiedAt, reads.lastAsked(), looksFirst) - desktop_.clock.now();
    if (left <= Duration{}) break;
    auto [sender, receiver] = makeOneShot<bool>();
    const auto wake = [this, waiting = std::make_shared<OneShotSender<bool>>(std::move(sender))] {
      desktop_.executor.post([waiting] { waiting->send(true); });
    };
    reads.notify(wake);
    const auto timer = desktop_.executor.after(left, wake);
    co_await receiver;
  }
  reads.notify({});
  if (reads.lastAsked()) {
    lookers_.insert(name);
  } else {
    lookers_.erase(name);
  }
}

std::optional<LiveInsertionBlock> TextInsertionService::pressKeys(const PasteOrder& order,
                                                                  Instant& postedAt) {
  const auto& application = order.application;
  if (const auto block = firstPasteBlock(observe(application, /*eventsAvailable=*/true, order.field)))
    return block;
  postedAt = desktop_.clock.now();
  switch (desktop_.keyboard.post(order.method.chord, application)) {
    case PostResult::posted:
      break;
    case PostResult::targetNotInFront:
      return observe(application, true, order.field).userActivatedAnother
                 ? LiveInsertionBlock::appChanged
                 : LiveInsertionBlock::targetNotActive;
    case PostResult::unavailable:
      return LiveInsertionBlock::eventsUnavailable;
  }
  return std::nullopt;
}

Task<TextDeliveryResult> TextInsertionService::settlePosted(SentPaste paste) {
  auto checking = paste.transactions.front().stillOwnsTemporaryContents();
  const bool owned = co_await checking;
  const bool restores = options_.shouldRestorePreviousClipboard;
  if (restores && !paste.transactions.front().previousIsComplete()) clipboardWasKept_ = false;
  auto result = restores ? TextDeliveryResult::insertionSent : TextDeliveryResult::insertedAndTranscriptKept;
  if (!owned) result = TextDeliveryResult::insertionSentClipboardChanged;
  lastResult_ = result;
  paste.restoresPrevious = restores;
  paste.generalChanged = !owned;
  pasteCleanup_.schedule(std::move(paste));
  co_return result;
}

Task<TextDeliveryResult> TextInsertionService::refuse(LiveInsertionBlock block, SpokenText text,
                                                      bool liveOnly) {
  lastBlock_ = block;
  lastResult_ = TextDeliveryResult::copiedFallback;
  logger_.event(LogLevel::notice, "paste_refused",
                {{"reason", PublicText::declared(rawValue(block))}, {"live", liveOnly}});
  if (!liveOnly) {
    auto copying = clipboards_.copy(std::move(text));
    co_await copying;
  }
  co_return TextDeliveryResult::copiedFallback;
}

/// The paste was not sent after all: the pasteboards get their previous contents back, before the text is put
/// on the general one again if it has to be pasted by hand.
Task<TextDeliveryResult> TextInsertionService::takeBack(LiveInsertionBlock block,
                                                        std::vector<ClipboardTransaction> transactions,
                                                        SpokenText text, bool liveOnly) {
  for (auto& transaction : transactions) {
    auto restoring = transaction.restorePrevious(ClipboardTransaction::Otherwise::clear);
    co_await restoring;
  }
  auto refusing = refuse(block, std::move(text), liveOnly);
  const auto result = co_await refusing;
  co_return result;
}

}  // namespace murmel
