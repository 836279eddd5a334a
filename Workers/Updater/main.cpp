#include "Foundation/Async/Clock.h"
#include "Workers/Common/Isolation.h"
#include "Workers/ModelDownloader/StoreFolder.h"
#include "Workers/Updater/FeedFetch.h"
#include "Workers/Updater/InstallationFolder.h"
#include "Workers/Updater/ReleaseDownload.h"
#include "Workers/Updater/UpdateOrder.h"
#include "Workers/Updater/UpdaterReport.h"

#include <chrono>
#include <csignal>

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

using namespace murmel;
using namespace murmel::updater;

std::int64_t secondsNow() {
  return std::chrono::duration_cast<std::chrono::seconds>(SystemClock().wallNow().time_since_epoch()).count();
}

std::expected<void, std::string> unpack(const UpdaterOptions& options, const UpdateRelease& release) {
  const auto installation = InstallationFolder::open(options.root);
  if (!installation) return std::unexpected(installation.error());
  const auto place = options.root / arrivalsFolder / archivePlace(release);
  const UniqueDescriptor archive(::open(place.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  if (!archive) return std::unexpected("The new version has not arrived yet.");
  const auto unpacked = installation->unpack(release, archive.get());
  // Unpacked or of no use: it is not needed any more either way.
  ::unlink(place.c_str());
  return unpacked;
}

std::expected<void, std::string> withInstallation(const UpdaterOptions& options, UpdaterReport& report) {
  // One updater at a time. Where the file system has no locks, the lock of the application's only instance
  // sees to that: nobody else starts one.
  const auto arrivals = downloader::StoreFolder::open(options.root / arrivalsFolder);
  if (!arrivals) return std::unexpected(arrivals.error().message);
  if (options.task == UpdaterTask::exchange || options.task == UpdaterTask::restore) {
    const auto installation = InstallationFolder::open(options.root);
    if (!installation) return std::unexpected(installation.error());
    return options.task == UpdaterTask::exchange ? installation->exchange() : installation->restore();
  }
  const auto release = readOrder(STDIN_FILENO, options, secondsNow());
  if (!release) return std::unexpected(release.error());
  if (options.task == UpdaterTask::unpack) return unpack(options, *release);
  return downloadRelease(options, *release, *arrivals, STDIN_FILENO, report);
}

}  // namespace

int main(int count, char** arguments) {
  // Told by the return values of the writes instead.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  ::prctl(PR_SET_NAME, "mrm-updater");
  UpdaterReport report(STDOUT_FILENO);
  const auto options = UpdaterOptions::parse({arguments + 1, arguments + count});
  if (!options) {
    report.failed(options.error());
    return 2;
  }
  const bool connects = options->task == UpdaterTask::feed || options->task == UpdaterTask::download;
  if (const auto confined = worker::provedConfined(connects); !confined)
    return report.failed(confined.error()), 1;
  if (options->task == UpdaterTask::feed) {
    const auto feed = fetchFeed(*options, STDIN_FILENO);
    if (!feed) return report.failed(feed.error()), 1;
    return report.feed(*feed) ? 0 : 1;
  }
  const auto done = withInstallation(*options, report);
  if (!done) return report.failed(done.error()), 1;
  return report.done() ? 0 : 1;
}
