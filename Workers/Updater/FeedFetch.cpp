#include "Workers/Updater/FeedFetch.h"

#include "Foundation/Async/Clock.h"
#include "MRMUpdatePolicy/UpdateFeed.h"
#include "Workers/ModelDownloader/CurlTransport.h"
#include "Workers/Updater/UpdateOrder.h"

#include <optional>

namespace murmel::updater {

namespace {

constexpr Duration longestFetch = std::chrono::seconds(30);
constexpr int httpOK = 200;
constexpr const char* noServer = "The server with the list of updates cannot be reached.";

/// Keeps a small answer in memory.
class SmallAnswer final : public downloader::TransferObserver {
 public:
  bool onHead(const downloader::ResponseHead& head) override {
    isGood_ = head.status == httpOK;
    return isGood_;
  }
  bool onData(std::span<const std::uint8_t> bytes) override {
    isTooLarge_ = bytes_.size() + bytes.size() > largestFeed;
    if (isTooLarge_) return false;
    bytes_.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return true;
  }
  void onEnd(const std::optional<MRMTransferError>& error) override {
    isOver_ = true;
    hasFailed_ = error.has_value();
  }

  [[nodiscard]] bool isOver() const { return isOver_; }
  std::expected<std::string, std::string> take() {
    if (isTooLarge_) return std::unexpected("The list of updates is too long.");
    if (hasFailed_) return std::unexpected(noServer);
    if (!isGood_) return std::unexpected("The server has no list of updates.");
    return std::move(bytes_);
  }

 private:
  std::string bytes_;
  bool isGood_ = false;
  bool isTooLarge_ = false;
  bool hasFailed_ = false;
  bool isOver_ = false;
};

}  // namespace

std::expected<std::string, std::string> fetchFeed(const UpdaterOptions& options, int input) {
  const SystemClock clock;
  const auto deadline = clock.now() + secondsToDuration(durationToSeconds(longestFetch) * options.timeScale);
  downloader::CurlTransport transport(options.certificates);
  SmallAnswer answer;
  const auto transfer = transport.start({.url = options.feedURL}, answer);
  while (!answer.isOver()) {
    const auto left = deadline - clock.now();
    if (left <= Duration::zero() || hasEnded(input)) {
      transport.stop(transfer);
      return std::unexpected(noServer);
    }
    transport.run(left, input);
  }
  return answer.take();
}

}  // namespace murmel::updater
