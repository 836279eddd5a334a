// The model downloader as it is shipped, but for its list: "--manifest FILE" first, whose lines are
// "IDENTIFIER SHA256 BYTES FOLDER FILE", with "-" for an unknown size.

#include "Workers/ModelDownloader/Downloader.h"

#include <fstream>
#include <list>
#include <vector>

#include <unistd.h>

int main(int count, char** arguments) {
  using namespace murmel;
  struct Row {
    std::string identifier, sha256, bytes, folder, file;
  };
  std::list<Row> rows;
  std::vector<ApprovedModelDownload> manifest;
  constexpr std::int64_t largest = 100'000;
  std::ifstream list(arguments[2]);
  for (Row row; list >> row.identifier >> row.sha256 >> row.bytes >> row.folder >> row.file;) {
    const auto& kept = rows.emplace_back(row);
    manifest.push_back({.identifier = kept.identifier,
                        .repository = "test/repository",
                        .revision = "0123456789012345678901234567890123456789",
                        .file = kept.file,
                        .sha256 = kept.sha256,
                        .relativePath = std::nullopt,
                        .byteCount = kept.bytes == "-" ? std::nullopt : std::optional(std::stoll(kept.bytes)),
                        .folder = kept.folder,
                        .largest = largest});
  }
  const auto options = downloader::Options::parse({arguments + 3, arguments + count});
  if (!options) return 2;
  return downloader::runDownloader(*options, manifest, STDIN_FILENO, STDOUT_FILENO);
}
