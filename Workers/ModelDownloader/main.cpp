#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Workers/Common/Isolation.h"
#include "Workers/ModelDownloader/Downloader.h"
#include "Workers/ModelDownloader/Report.h"

#include <cstdio>
#include <vector>

#include <sys/prctl.h>
#include <unistd.h>

#if defined(MURMEL_SANITIZED)
/// The search for leaks at the end needs more than a confined process may do, and would take the last line
/// with it.
extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_options() {
  return "detect_leaks=0";
}
#endif

int main(int count, char** arguments) {
  using namespace murmel;
  ::prctl(PR_SET_NAME, "mrm-model-downl");  // 15 bytes are kept
  const auto options = downloader::Options::parse({arguments + 1, arguments + count});
  if (!options) {
    std::fputs(downloader::lineFor(downloader::FatalReport{options.error()}).c_str(), stdout);
    return 2;
  }
  if (const auto confined = worker::provedConfined(/*connects=*/true); !confined) {
    std::fputs(downloader::lineFor(downloader::FatalReport{confined.error()}).c_str(), stdout);
    return 2;
  }
  std::vector<ApprovedModelDownload> manifest(MRMDownloadManifest::all.begin(),
                                              MRMDownloadManifest::all.end());
  manifest.insert(manifest.end(), MRMDownloadManifest::speechGGML.begin(),
                  MRMDownloadManifest::speechGGML.end());
  return downloader::runDownloader(*options, manifest, STDIN_FILENO, STDOUT_FILENO);
}
