#pragma once

#include "MRMDownloadManifest/ApprovedModelDownload.h"
#include "Workers/ModelDownloader/Options.h"

#include <span>

namespace murmel::downloader {

/// Reads commands from `input` and writes reports to `output` until the input ends or nobody reads the
/// reports any more. Nothing outside `manifest` can be asked for. Gives the exit status: 0, or 1 when it
/// could not work.
int runDownloader(const Options& options, std::span<const ApprovedModelDownload> manifest, int input,
                  int output);

}  // namespace murmel::downloader
