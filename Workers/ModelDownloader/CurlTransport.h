#pragma once

#include "Foundation/Async/Clock.h"
#include "Workers/ModelDownloader/Transport.h"

#include <filesystem>
#include <map>
#include <memory>

namespace murmel::downloader {

/// HTTPS through libcurl: encrypted from the first to the last redirect, certificates checked, no cookies, no
/// credentials.
class CurlTransport final : public Transport {
 public:
  /// `certificates`: a file of certificate authorities that replaces the system's; empty for the system's.
  explicit CurlTransport(std::filesystem::path certificates);
  ~CurlTransport() override;

  Identifier start(const TransferRequest& request, TransferObserver& observer) override;
  void stop(Identifier transfer) override;
  void pause(Identifier transfer, bool paused) override;
  void prioritise(Identifier transfer, double priority) override;

  /// Moves bytes and calls observers, for at most `limit`; returns earlier when something happened or
  /// `descriptor` can be read.
  void run(Duration limit, int descriptor);

 private:
  class Transfer;
  struct Multi;

  void collectEnded();

  std::filesystem::path certificates_;
  std::unique_ptr<Multi> multi_;
  std::map<Identifier, std::unique_ptr<Transfer>> transfers_;
  Identifier next_ = 1;
};

}  // namespace murmel::downloader
