#include "Delivery/PreviousClipboard.h"

#include <utility>

namespace murmel {

Task<std::optional<ClipboardCapture>> PreviousContents::result(std::shared_ptr<PreviousContents> contents,
                                                               std::int64_t changeCount) {
  if (!contents) co_return std::nullopt;
  if (!contents->capture_) {
    auto [sender, receiver] = makeOneShot<bool>();
    contents->waiters_.push_back(std::move(sender));
    co_await receiver;
  }
  std::optional<ClipboardCapture> found;
  if (contents->capture_ && contents->capture_->changeCount == changeCount) found = contents->capture_;
  co_return found;
}

void PreviousContents::finish(ClipboardCapture capture) {
  capture_ = std::move(capture);
  for (auto& waiter : std::exchange(waiters_, {})) waiter.send(true);
}

void PreviousClipboard::begin() {
  if (latest_) return;
  changes_ = pasteboard_.onForeignChange([this](std::int64_t changeCount) { changed(changeCount); });
  capture();
}

void PreviousClipboard::changed(std::int64_t changeCount) {
  // Word of a change may come after the capture of what it brought; one that is under way ends with the
  // change, and another one follows it.
  changedTo_ = changeCount;
  if (latest_ && latest_->capture_ && latest_->capture_->changeCount < changeCount) capture();
}

void PreviousClipboard::end() {
  changes_.reset();
  latest_.reset();
  changedTo_ = 0;
}

void PreviousClipboard::standsAgain(const std::shared_ptr<PreviousContents>& contents,
                                    std::int64_t changeCount) {
  // What somebody else has copied since is newer.
  if (contents != latest_ || !contents || !contents->capture_) return;
  contents->capture_->changeCount = changeCount;
}

void PreviousClipboard::capture() {
  latest_ = std::make_shared<PreviousContents>();
  scope_.start(run(latest_));
}

Task<void> PreviousClipboard::run(std::shared_ptr<PreviousContents> contents) {
  auto capturing = pasteboard_.capture();
  auto captured = co_await capturing;
  const auto& items = captured.contents->items;
  logger_.event(
      captured.complete ? LogLevel::debug : LogLevel::notice, "clipboard_captured",
      {{"complete", captured.complete}, {"forms", items.empty() ? 0 : items.front().values.size()}});
  contents->finish(std::move(captured));
  if (contents == latest_ && contents->capture_->changeCount < changedTo_) capture();
}

}  // namespace murmel
