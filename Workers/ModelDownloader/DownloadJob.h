#pragma once

#include "MRMDownloadManifest/ApprovedModelDownload.h"
#include "Workers/ModelDownloader/PartialFile.h"
#include "Workers/ModelDownloader/TransferMachine.h"
#include "Workers/ModelDownloader/Transport.h"

#include <optional>
#include <string>
#include <vector>

namespace murmel::downloader {

/// One content on its way to one or several places of the store. Takes the bytes of its transfer; what
/// follows from them is decided by the queue, outside the transport's callbacks.
class DownloadJob final : public TransferObserver {
 public:
  enum class State { waiting, running, backingOff };

  DownloadJob(const ApprovedModelDownload& asset, MRMModelDownloadImportance wanted)
      : assets{&asset}, importance(wanted) {}

  bool onHead(const ResponseHead& head) override;
  bool onData(std::span<const std::uint8_t> bytes) override;
  void onEnd(const std::optional<MRMTransferError>& error) override;

  /// The moment at which callbacks happen; set by the queue before the transport runs.
  Instant now;

  std::vector<const ApprovedModelDownload*> assets;  ///< all with the same digest; never empty
  MRMModelDownloadImportance importance;
  State state = State::waiting;
  bool isSuspended = false;
  bool wasLookedFor = false;  ///< in the store, before the first transfer
  double priority = 0;
  std::optional<PartialFile> partial;
  std::optional<TransferMachine> machine;
  std::optional<Transport::Identifier> transfer;
  Instant retryAt;
  std::string retryCause;
  std::optional<Instant> told;  ///< when progress was told last
  bool isOver = false;          ///< to be removed

  struct End {
    std::optional<MRMTransferError> error;
  };
  std::optional<End> end;                ///< the transfer is over; not yet looked at
  std::optional<FileError> diskFailure;  ///< bytes could not be kept
  bool learntTotal = false;              ///< the answer told a size that was not known; not yet looked at

  [[nodiscard]] std::vector<std::string> places() const;
  [[nodiscard]] std::string_view sha256() const { return assets.front()->sha256; }
  [[nodiscard]] std::optional<std::int64_t> total() const;
  [[nodiscard]] std::int64_t received() const { return machine ? machine->received() : 0; }
};

}  // namespace murmel::downloader
