#include "Delivery/PasteCleanup.h"

#include <utility>

namespace murmel {

using Otherwise = ClipboardTransaction::Otherwise;

PasteCleanup::PasteCleanup(Executor& executor, const Clock& clock, ReplacedClipboard& replaced, Logger logger)
    : executor_(executor), clock_(clock), replaced_(replaced), logger_(std::move(logger)) {}

void PasteCleanup::schedule(SentPaste paste) {
  const auto habit = usualReads_.find(paste.application);
  const PasteReceipts receipts(paste.postedAt,
                               habit == usualReads_.end() ? std::nullopt : std::optional(habit->second));
  pending_ = std::make_shared<Pending>(
      Pending{Uuid::random(), std::move(paste), receipts, 0, false, {}, {}, {}, {}, {}});
  countReads(*pending_);
  // Reads and changes may still be on their way here when the paste is settled and another one pending.
  const auto ifCurrent = [this, weak = std::weak_ptr(pending_)] {
    auto pending = weak.lock();
    return pending == pending_ ? pending : nullptr;
  };
  pending_->paste.reads->notify([this, ifCurrent] {
    const auto pending = ifCurrent();
    if (!pending) return;
    countReads(*pending);
    evaluate();
  });
  auto& general = pending_->paste.transactions.front();
  pending_->changes.push_back(
      general.pasteboard().onForeignChange([this, ifCurrent](std::int64_t /*changeCount*/) {
        const auto pending = ifCurrent();
        if (!pending) return;
        pending->paste.generalChanged = true;
        evaluate();
      }));
  evaluate();
}

void PasteCleanup::countReads(Pending& pending) {
  const auto& times = pending.paste.reads->times();
  for (; pending.countedReads < times.size(); ++pending.countedReads)
    pending.receipts.noteRead(times[pending.countedReads]);
}

void PasteCleanup::evaluate() {
  if (!pending_ || pending_->settling) return;
  if (hasArrived()) answerArrival(true);
  if (pending_->paste.generalChanged) {
    settle();
    return;
  }
  const auto now = clock_.now();
  const auto verdict = pending_->receipts.verdict(now);
  if (verdict.step == PasteReceipts::Step::wait) {
    pending_->timer = executor_.after(verdict.until - now, [this] { evaluate(); });
  } else {
    settle();
  }
}

bool PasteCleanup::hasArrived() const {
  return pending_->receipts.wasRead() && pending_->paste.hasField;
}

void PasteCleanup::settle() {
  pending_->settling = true;
  scope_.start(cleanUp(pending_->identifier));
}

Task<PasteSettlement> PasteCleanup::cleanUpGeneral(std::shared_ptr<Pending> pending) {
  auto& transaction = pending->paste.transactions.front();
  const bool wasRead = pending->receipts.wasRead();
  const auto whenChanged = wasRead ? PasteSettlement::clipboardChanged : PasteSettlement::replacedUnread;
  if (pending->paste.generalChanged) co_return whenChanged;
  const bool arrived = wasRead && pending->paste.hasField;
  if (arrived && pending->paste.restoresPrevious) {
    auto waiting = transaction.previous();
    const auto before = co_await waiting;
    pending->previousWasComplete = before && before->complete;
    auto restoring = transaction.restorePrevious();
    const auto restoration = co_await restoring;
    switch (restoration) {
      case ClipboardTransaction::Restoration::restored:
        co_return PasteSettlement::clipboardRestored;
      case ClipboardTransaction::Restoration::nothingKept:
        co_return PasteSettlement::transcriptKept;
      case ClipboardTransaction::Restoration::notOwned:
        break;
    }
    co_return whenChanged;
  }
  auto keeping = transaction.keepTranscript();
  const bool kept = co_await keeping;
  if (!kept) co_return whenChanged;
  if (!arrived && pending->paste.restoresPrevious) {
    auto waiting = transaction.previous();
    auto before = co_await waiting;
    if (before) replaced_.offer(before->contents, transaction.ownership().changeCount);
  }
  if (arrived) co_return PasteSettlement::transcriptKept;
  co_return wasRead ? PasteSettlement::noField : PasteSettlement::neverRead;
}

Task<void> PasteCleanup::cleanUp(Uuid identifier) {
  const auto pending = pending_;
  auto cleaning = cleanUpGeneral(pending);
  const auto settlement = co_await cleaning;
  // The primary selection was only for this paste, whatever became of it.
  for (std::size_t index = 1; index < pending->paste.transactions.size(); ++index) {
    auto restoring = pending->paste.transactions[index].restorePrevious(Otherwise::clear);
    co_await restoring;
  }
  conclude(identifier, settlement);
}

void PasteCleanup::log(const Pending& pending, PasteSettlement settlement) const {
  const auto& reads = *pending.paste.reads;
  const auto took =
      std::chrono::duration_cast<std::chrono::milliseconds>(clock_.now() - pending.paste.postedAt);
  logger_.event(LogLevel::notice, "paste_settled",
                {{"how", PublicText::declared(rawValue(settlement))},
                 {"reads", static_cast<std::int64_t>(reads.times().size())},
                 {"refused_readers", reads.refused()},
                 {"clipboard_complete", pending.previousWasComplete.value_or(
                                            pending.paste.transactions.front().previousIsComplete())},
                 {"milliseconds", took.count()}});
}

void PasteCleanup::conclude(Uuid identifier, PasteSettlement settlement) {
  // A newer paste may have taken the place of the one that was restored.
  if (!pending_ || pending_->identifier != identifier) return;
  lastWasRead_ = murmel::hasArrived(settlement);
  if (lastWasRead_) usualReads_[pending_->paste.application] = pending_->receipts.reads();
  answerArrival(lastWasRead_);
  log(*pending_, settlement);
  const auto concluded = std::exchange(pending_, nullptr);
  // Whoever waits goes on from the loop, not from inside this object.
  for (auto& finisher : concluded->finishers) {
    executor_.post([sender = std::move(finisher), settlement]() mutable { sender.send(settlement); });
  }
  settled_.emit(settlement);
  // It may be one of its own subscriptions that brought us here.
  executor_.post([concluded] {});
}

void PasteCleanup::answerArrival(bool arrived) {
  for (auto& waiter : std::exchange(pending_->arrivalWaiters, {})) {
    executor_.post([sender = std::move(waiter), arrived]() mutable { sender.send(arrived); });
  }
}

Task<std::optional<TextDeliveryResult>> PasteCleanup::finish() {
  if (!pending_) co_return std::nullopt;
  const bool restoreWasPending = pending_->paste.restoresPrevious;
  auto [sender, receiver] = makeOneShot<PasteSettlement>();
  pending_->finishers.push_back(std::move(sender));
  pending_->receipts.hurry();
  evaluate();
  const auto settlement = co_await receiver;
  if (!settlement) co_return std::nullopt;
  if (!restoreWasPending && murmel::hasArrived(*settlement)) co_return std::nullopt;
  co_return deliveryResult(*settlement);
}

Task<void> PasteCleanup::idle() {
  while (pending_) {
    auto [sender, receiver] = makeOneShot<PasteSettlement>();
    pending_->finishers.push_back(std::move(sender));
    co_await receiver;
  }
}

Task<bool> PasteCleanup::arrival() {
  if (!pending_) co_return lastWasRead_;
  if (hasArrived()) co_return true;
  auto [sender, receiver] = makeOneShot<bool>();
  pending_->arrivalWaiters.push_back(std::move(sender));
  const auto arrived = co_await receiver;
  co_return arrived.value_or(false);
}

}  // namespace murmel
