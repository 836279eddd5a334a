#pragma once

#include "MRMDownloadManifest/MRMModelDownloadPolicy.h"
#include "Workers/ModelDownloader/TransferMachine.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace murmel::downloader {

/// Who receives one transfer. Nothing is called from inside a call to the transport.
class TransferObserver {
 public:
  virtual ~TransferObserver() = default;
  /// The head of the final answer, after redirects. False ends the transfer.
  virtual bool onHead(const ResponseHead& head) = 0;
  /// False ends the transfer.
  virtual bool onData(std::span<const std::uint8_t> bytes) = 0;
  /// The last call. Without an error the answer ended where it said; a transfer that an observer ended has
  /// none.
  virtual void onEnd(const std::optional<MRMTransferError>& error) = 0;
};

struct TransferRequest {
  std::string url;
  std::int64_t offset = 0;
  std::string ifRange{};  ///< empty: without condition
  double priority = 0.5;
};

/// Moves bytes. One thread.
class Transport {
 public:
  using Identifier = std::uint64_t;

  virtual ~Transport() = default;
  /// `observer` must outlive the transfer.
  virtual Identifier start(const TransferRequest& request, TransferObserver& observer) = 0;
  /// Ends a transfer without another call to its observer.
  virtual void stop(Identifier transfer) = 0;
  /// Keeps the connection and takes no bytes from it.
  virtual void pause(Identifier transfer, bool paused) = 0;
  virtual void prioritise(Identifier transfer, double priority) = 0;
};

}  // namespace murmel::downloader
