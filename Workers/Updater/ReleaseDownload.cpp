#include "Workers/Updater/ReleaseDownload.h"

#include "Foundation/Async/Clock.h"
#include "Workers/ModelDownloader/CurlTransport.h"
#include "Workers/ModelDownloader/DownloadQueue.h"
#include "Workers/Updater/UpdateOrder.h"

#include <array>
#include <optional>
#include <variant>

namespace murmel::updater {

namespace {

constexpr std::string_view identifier = "release";

/// Passes reports on, and keeps how it ended.
struct Outcome {
  UpdaterReport& report;
  std::optional<std::expected<void, std::string>> result;
  bool isHeard = true;

  void operator()(const downloader::ProgressReport& progress) {
    isHeard = report.progress(progress.state, progress.received, progress.total, progress.cause);
  }
  void operator()(const downloader::InstalledReport&) { result = std::expected<void, std::string>(); }
  void operator()(const downloader::FailedReport& failure) { result = std::unexpected(failure.message); }
  template <class Other>
  void operator()(const Other&) {}
};

}  // namespace

std::string archivePlace(const UpdateRelease& release) {
  return "Release/" + release.sha256;
}

std::expected<void, std::string> downloadRelease(const UpdaterOptions& options, const UpdateRelease& release,
                                                 const downloader::StoreFolder& store, int input,
                                                 UpdaterReport& report) {
  const std::array assets{ApprovedModelDownload{.identifier = identifier,
                                                .repository = {},
                                                .revision = {},
                                                .file = release.sha256,
                                                .sha256 = release.sha256,
                                                .relativePath = std::nullopt,
                                                .byteCount = release.size,
                                                .folder = "Release"}};
  const SystemClock clock;
  downloader::CurlTransport transport(options.certificates);
  downloader::TransferLimits limits;
  limits.scale = options.timeScale;
  Outcome outcome{report, std::nullopt};
  downloader::DownloadQueue queue({assets, [&](const ApprovedModelDownload&) { return release.url; }, limits},
                                  store, transport,
                                  [&](const downloader::Report& news) { std::visit(outcome, news); });
  queue.download({std::string(identifier)}, MRMModelDownloadImportance::required);
  while (!outcome.result) {
    const auto wait = queue.advance(clock.now());
    if (outcome.result) break;
    if (!outcome.isHeard || hasEnded(input)) return std::unexpected("The download was stopped.");
    transport.run(wait, input);
  }
  return *outcome.result;
}

}  // namespace murmel::updater
