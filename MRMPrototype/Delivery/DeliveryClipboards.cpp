#include "Delivery/DeliveryClipboards.h"

#include "Delivery/PrivateTranscript.h"

#include <utility>

namespace murmel {

DeliveryClipboards::DeliveryClipboards(Executor& executor, ClipboardPasteboard& general,
                                       ClipboardPasteboard* primary, std::string ownershipType, Logger logger)
    : executor_(executor),
      general_(general),
      primary_(primary),
      ownershipType_(std::move(ownershipType)),
      logger_(std::move(logger)),
      previousGeneral_(general, logger_),
      replaced_(executor, general) {
  if (primary != nullptr) previousPrimary_.emplace(*primary, logger_);
}

void DeliveryClipboards::begin() {
  previousGeneral_.begin();
}

void DeliveryClipboards::beginPrimary() {
  if (previousPrimary_) previousPrimary_->begin();
}

void DeliveryClipboards::end() {
  previousGeneral_.end();
  if (previousPrimary_) previousPrimary_->end();
  lastCopySucceeded_ = true;
}

Task<std::vector<ClipboardTransaction>> DeliveryClipboards::open(SpokenText text, DesktopClient reader,
                                                                 bool usesPrimary) {
  std::vector<ClipboardTransaction> transactions;
  auto openingGeneral = ClipboardTransaction::open(general_, text, ownershipType_, reader, previousGeneral_);
  auto general = co_await openingGeneral;
  if (!general) co_return transactions;
  transactions.push_back(*std::move(general));
  replaced_.withdraw();
  if (usesPrimary && primary_ != nullptr) {
    auto openingPrimary =
        ClipboardTransaction::open(*primary_, text, ownershipType_, reader, *previousPrimary_);
    auto primary = co_await openingPrimary;
    if (primary) transactions.push_back(*std::move(primary));
  }
  co_return transactions;
}

Task<bool> DeliveryClipboards::copy(SpokenText text) {
  auto [sender, receiver] = makeOneShot<bool>();
  const auto answer = std::make_shared<OneShotSender<bool>>(std::move(sender));
  scope_.start(write(std::move(text), answer));
  const auto late = executor_.after(patience, [answer] { answer->send(false); });
  auto waiting = awaitAnswer(std::move(receiver));
  lastCopySucceeded_ = co_await waiting;
  if (!lastCopySucceeded_) logger_.event(LogLevel::error, "clipboard_unavailable");
  co_return lastCopySucceeded_;
}

/// What it has replaced may take longer to arrive than anybody waits for the answer.
Task<void> DeliveryClipboards::write(SpokenText text, std::shared_ptr<OneShotSender<bool>> answer) {
  const auto previous = previousGeneral_.take();
  auto writing = general_.mrmReplace(privateTranscript(text, std::nullopt));
  const auto written = co_await writing;
  executor_.post([answer, stands = written.has_value()] { answer->send(stands); });
  if (!written) co_return;
  previousGeneral_.changed(*written);
  auto waiting = PreviousContents::result(previous, *written - 1);
  const auto before = co_await waiting;
  if (before) {
    replaced_.offer(before->contents, *written);
  } else {
    replaced_.withdraw();
  }
}

}  // namespace murmel
