#pragma once

#include "MRMDownloadManifest/ApprovedModelDownload.h"
#include "Workers/ModelDownloader/DownloadJob.h"
#include "Workers/ModelDownloader/Report.h"
#include "Workers/ModelDownloader/StoreFolder.h"
#include "Workers/ModelDownloader/Transport.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace murmel::downloader {

/// What is asked for and has not arrived: decides which transfers run, puts what has arrived into its places
/// and tells how things stand. One thread; time comes as a value.
class DownloadQueue {
 public:
  /// Left free on the disk beyond what the models need.
  static constexpr std::int64_t reservedBytes = 16 << 20;

  struct Settings {
    std::span<const ApprovedModelDownload> manifest;
    std::function<std::string(const ApprovedModelDownload&)> address;  ///< where an asset is
    TransferLimits limits;
  };

  /// Everything must outlive the queue.
  DownloadQueue(Settings settings, const StoreFolder& store, Transport& transport,
                std::function<void(const Report&)> report);
  ~DownloadQueue();

  /// Asks for files. An identifier that is not in the manifest is refused; one that is under way takes the
  /// higher importance.
  void download(const std::vector<std::string>& identifiers, MRMModelDownloadImportance importance);
  /// Stops files. What has arrived of them stays for the next time, unless `discards`.
  void cancel(const std::vector<std::string>& identifiers, bool discards);
  /// Somebody dictates, or no longer does.
  void setRuntimeActive(bool active) { runtimeActive_ = active; }

  /// Does what is due. Gives the time until it wants to be called again at the latest.
  Duration advance(Instant now);

  [[nodiscard]] bool isIdle() const { return jobs_.empty(); }

 private:
  const ApprovedModelDownload* find(std::string_view identifier) const;
  void add(const ApprovedModelDownload& asset, MRMModelDownloadImportance importance);
  void stop(DownloadJob& job);
  void refuse(const std::string& identifier);
  [[nodiscard]] MRMModelDownloadScheduling schedulingOf(const DownloadJob& job) const;
  void schedule(Instant now);
  void makeRoom(Instant now);
  void start(DownloadJob& job, Instant now);
  bool installFromStore(DownloadJob& job);
  bool hasSpaceFor(DownloadJob& job);
  void take(DownloadJob& job, Instant now);
  void verify(DownloadJob& job, Instant now);
  void follow(DownloadJob& job, const TransferMachine::Next& next, Instant now);
  void finish(DownloadJob& job);
  void fail(DownloadJob& job, const DownloadFailure& failure);
  void tellProgress(DownloadJob& job, Instant now);

  Settings settings_;
  const StoreFolder& store_;
  Transport& transport_;
  std::function<void(const Report&)> report_;
  bool runtimeActive_ = false;
  std::vector<std::unique_ptr<DownloadJob>> jobs_;  ///< in the order asked for
};

}  // namespace murmel::downloader
