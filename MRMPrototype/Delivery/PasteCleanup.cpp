#include "Delivery/PasteCleanup.h"

#include <utility>

namespace murmel {

PasteCleanup::PasteCleanup(Executor& executor, const Clock& clock) : executor_(executor), clock_(clock) {}

void PasteCleanup::schedule(SentPaste paste) {
  const auto postedAt = paste.postedAt;
  pending_ = std::make_shared<Pending>(
      Pending{Uuid::random(), std::move(paste), PasteReceipts(postedAt), false, false, {}, {}, {}, {}});
  for (const auto at : pending_->paste.reads->times()) pending_->receipts.noteRead(at);
  // Reads and changes may still be on their way here when the paste is settled and another one pending.
  const auto ifCurrent = [this, weak = std::weak_ptr(pending_)] {
    auto pending = weak.lock();
    return pending == pending_ ? pending : nullptr;
  };
  pending_->paste.reads->notify([this, ifCurrent](Instant at) {
    const auto pending = ifCurrent();
    if (!pending) return;
    pending->receipts.noteRead(at);
    evaluate();
  });
  auto& general = pending_->paste.transactions.front();
  pending_->changes.push_back(
      general.pasteboard().onForeignChange([this, ifCurrent](std::int64_t /*changeCount*/) {
        const auto pending = ifCurrent();
        if (!pending) return;
        pending->generalChanged = true;
        evaluate();
      }));
  evaluate();
}

void PasteCleanup::evaluate() {
  if (!pending_ || pending_->settling) return;
  if (pending_->receipts.wasRead()) answerArrival(true);
  if (pending_->generalChanged) {
    settle(pending_->receipts.wasRead());
    return;
  }
  const auto now = clock_.now();
  const auto verdict = pending_->receipts.verdict(now);
  switch (verdict.step) {
    case PasteReceipts::Step::wait:
      pending_->timer = executor_.after(verdict.until - now, [this] { evaluate(); });
      return;
    case PasteReceipts::Step::restore:
      settle(true);
      return;
    case PasteReceipts::Step::neverRead:
      settle(false);
      return;
  }
}

void PasteCleanup::settle(bool wasRead) {
  pending_->settling = true;
  const auto identifier = pending_->identifier;
  if (!wasRead && !pending_->generalChanged) {
    conclude(identifier, PasteSettlement::neverRead);
  } else {
    scope_.start(restore(identifier));
  }
}

Task<void> PasteCleanup::restore(Uuid identifier) {
  const auto pending = pending_;
  auto settlement = PasteSettlement::clipboardChanged;
  for (std::size_t index = 0; index < pending->paste.transactions.size(); ++index) {
    const bool isGeneral = index == 0;
    if (isGeneral && !pending->paste.restoresPrevious) {
      if (!pending->generalChanged) settlement = PasteSettlement::transcriptKept;
      continue;
    }
    auto restoring = pending->paste.transactions[index].restorePrevious();
    const bool restored = co_await restoring;
    if (isGeneral && restored) settlement = PasteSettlement::clipboardRestored;
  }
  conclude(identifier, settlement);
}

void PasteCleanup::conclude(Uuid identifier, PasteSettlement settlement) {
  // A newer paste may have taken the place of the one that was restored.
  if (!pending_ || pending_->identifier != identifier) return;
  lastWasRead_ = pending_->receipts.wasRead();
  answerArrival(lastWasRead_);
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
  const bool arrived = *settlement != PasteSettlement::neverRead;
  if (!restoreWasPending && arrived) co_return std::nullopt;
  co_return deliveryResult(*settlement);
}

Task<bool> PasteCleanup::arrival() {
  if (!pending_) co_return lastWasRead_;
  if (pending_->receipts.wasRead()) co_return true;
  auto [sender, receiver] = makeOneShot<bool>();
  pending_->arrivalWaiters.push_back(std::move(sender));
  const auto arrived = co_await receiver;
  co_return arrived.value_or(false);
}

}  // namespace murmel
