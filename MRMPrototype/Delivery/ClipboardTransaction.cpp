#include "Delivery/ClipboardTransaction.h"

#include "Delivery/PrivateTranscript.h"
#include "Foundation/Uuid.h"

#include <utility>

namespace murmel {

std::string ClipboardTransaction::ownershipType(std::string_view applicationIdentifier) {
  return std::string(applicationIdentifier) + ".temporary-transcript-owner";
}

ClipboardTransaction::ClipboardTransaction(ClipboardPasteboard& pasteboard, ClipboardCapture previous,
                                           ClipboardOwnership ownership, std::string ownershipType)
    : pasteboard_(&pasteboard),
      previous_(std::move(previous)),
      ownership_(std::move(ownership)),
      ownershipType_(std::move(ownershipType)) {}

Task<std::optional<ClipboardTransaction>> ClipboardTransaction::open(ClipboardPasteboard& pasteboard,
                                                                     SpokenText text,
                                                                     std::string ownershipType) {
  auto capturing = pasteboard.capture();
  auto previous = co_await capturing;

  const auto marker = Uuid::random().text();
  const OwnershipMarker ownershipMarker{ownershipType, marker};
  auto writing = pasteboard.mrmReplace(privateTranscript(text, ownershipMarker));
  const auto written = co_await writing;
  if (!written) co_return std::nullopt;

  ClipboardOwnership ownership{marker, *written};
  ClipboardTransaction transaction(pasteboard, std::move(previous), std::move(ownership),
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

Task<bool> ClipboardTransaction::restorePrevious() {
  auto& pasteboard = *pasteboard_;
  const auto expected = ownership_.changeCount;
  auto previous = previous_.contents;
  auto checking = stillOwnsTemporaryContents();
  const bool owned = co_await checking;
  if (!owned) co_return false;
  // Somebody may write between the check and the restore: the pasteboard decides in one step.
  auto restoring = pasteboard.mrmReplaceIfUnchanged(std::move(previous), expected);
  const auto restored = co_await restoring;
  co_return restored.has_value();
}

}  // namespace murmel
