#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Workers/ModelDownloader/Downloader.h"

#include <cstdio>
#include <vector>

#include <unistd.h>

int main(int count, char** arguments) {
  using namespace murmel;
  const auto options = downloader::Options::parse({arguments + 1, arguments + count});
  if (!options) {
    std::fprintf(stderr, "mrm-model-downloader: %s\n", options.error().c_str());
    return 2;
  }
  std::vector<ApprovedModelDownload> manifest(MRMDownloadManifest::all.begin(),
                                              MRMDownloadManifest::all.end());
  manifest.insert(manifest.end(), MRMDownloadManifest::parakeetGGML.begin(),
                  MRMDownloadManifest::parakeetGGML.end());
  return downloader::runDownloader(*options, manifest, STDIN_FILENO, STDOUT_FILENO);
}
