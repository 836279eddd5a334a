#include "Delivery/ClipboardTransaction.h"

#include "Delivery/PrivateTranscript.h"
#include "Foundation/Uuid.h"

#include <utility>

namespace murmel {

std::string ClipboardTransaction::ownershipType(std::string_view applicationIdentifier) {
  return std::string(applicationIdentifier) + ".temporary-transcript-owner";
}

ClipboardTransaction::ClipboardTransaction(ClipboardPasteboard& pasteboard,
                                           std::shared_ptr<PreviousContents> previous,
                                           PreviousClipboard& keeper, ClipboardOwnership ownership,
                                           std::string ownershipType)
    : pasteboard_(&pasteboard),
      previous_(std::move(previous)),
      keeper_(&keeper),
      ownership_(std::move(ownership)),
      ownershipType_(std::move(ownershipType)) {}

Task<std::optional<ClipboardTransaction>> ClipboardTransaction::open(ClipboardPasteboard& pasteboard,
                                                                     SpokenText text,
                                                                     std::string ownershipType,
                                                                     DesktopClient reader,
                                                                     PreviousClipboard& previous) {
  auto contents = previous.take();
  const auto marker = Uuid::random().text();
  const OwnershipMarker ownershipMarker{ownershipType, marker};
  auto writing = pasteboard.mrmReplaceFor(reader, privateTranscript(text, ownershipMarker));
  const auto written = co_await writing;
  if (!written) co_return std::nullopt;

  ClipboardOwnership ownership{marker, *written};
  ClipboardTransaction transaction(pasteboard, std::move(contents), previous, std::move(ownership),
                                   std::move(ownershipType));
  std::optional<ClipboardTransaction> opened(std::move(transaction));
  co_return opened;
}

Task<bool> ClipboardTransaction::stillOwnsTemporaryContents() const {
  // The operands are copied first: the transaction may be moved while the pasteboard answers.
  auto& pasteboard = *pasteboard_;
  const auto type = ownershipType_;
  const auto ownership = ownership_;
  auto counting = pasteboard.changeCount();
  const auto count = co_await counting;
  if (count != ownership.changeCount) co_return false;
  auto reading = pasteboard.data(type);
  const auto marker = co_await reading;
  co_return marker == ownership.marker;
}

Task<std::optional<ClipboardCapture>> ClipboardTransaction::previous() const {
  return PreviousContents::result(previous_, replacedChangeCount());
}

Task<ClipboardTransaction::Restoration> ClipboardTransaction::restorePrevious(Otherwise otherwise) {
  auto& pasteboard = *pasteboard_;
  const auto expected = ownership_.changeCount;
  const auto contents = previous_;
  auto* keeper = keeper_;
  auto waiting = previous();
  auto checking = stillOwnsTemporaryContents();
  const auto before = co_await waiting;
  const bool owned = co_await checking;
  if (!owned) co_return Restoration::notOwned;
  if (!before || (!before->complete && before->contents->isEmpty())) {
    if (otherwise == Otherwise::clear) {
      auto clearing = pasteboard.mrmReplaceIfUnchanged(shared({}), expected);
      co_await clearing;
      co_return Restoration::nothingKept;
    }
    auto keeping = pasteboard.serveEverybody(expected);
    const bool kept = co_await keeping;
    if (kept) keeper->changed(expected);
    co_return kept ? Restoration::nothingKept : Restoration::notOwned;
  }
  // Somebody may write between the check and the restore: the pasteboard decides in one step.
  auto restoring = pasteboard.mrmReplaceIfUnchanged(before->contents, expected);
  const auto restored = co_await restoring;
  if (!restored) co_return Restoration::notOwned;
  keeper->standsAgain(contents, *restored);
  co_return Restoration::restored;
}

Task<bool> ClipboardTransaction::keepTranscript() const {
  auto* keeper = keeper_;
  const auto count = ownership_.changeCount;
  auto serving = pasteboard_->serveEverybody(count);
  const bool stands = co_await serving;
  // It is what the user finds there: the next paste gives it back.
  if (stands) keeper->changed(count);
  co_return stands;
}

}  // namespace murmel
