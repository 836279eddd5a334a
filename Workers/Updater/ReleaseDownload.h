#pragma once

#include "MRMUpdatePolicy/UpdateFeed.h"
#include "Workers/ModelDownloader/StoreFolder.h"
#include "Workers/Updater/UpdaterOptions.h"
#include "Workers/Updater/UpdaterReport.h"

#include <expected>
#include <filesystem>
#include <string>

namespace murmel::updater {

/// Below the folder of the installation: what has arrived, and the lock that admits one updater.
inline constexpr const char* arrivalsFolder = ".arrivals";

/// Where the archive of a release arrives, relative to that folder.
std::string archivePlace(const UpdateRelease& release);

/// Fetches the archive of `release` into `store`, going on where an earlier attempt ended; it appears in its
/// place when it is whole and has its digest. Ends when `input` does: what has arrived stays. The error is
/// one sentence.
std::expected<void, std::string> downloadRelease(const UpdaterOptions& options, const UpdateRelease& release,
                                                 const downloader::StoreFolder& store, int input,
                                                 UpdaterReport& report);

}  // namespace murmel::updater
