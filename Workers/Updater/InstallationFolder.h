#pragma once

#include "MRMUpdatePolicy/UpdateFeed.h"
#include "Workers/ModelDownloader/OwnFolder.h"

#include <expected>
#include <filesystem>
#include <string>

namespace murmel::updater {

/// A direct installation below the home folder:
///
///     current/     what is installed
///     previous/    the version before it, once there was one
///     .new/        a version that is being unpacked, or waits for the exchange
///     .arrivals/   archives, see ReleaseDownload.h
///
/// `current` is whole at every moment: it is exchanged in one step for a folder that has been written to the
/// disk. The errors are sentences.
class InstallationFolder {
 public:
  static std::expected<InstallationFolder, std::string> open(const std::filesystem::path& root);

  /// Unpacks the archive of `release` to `.new`, and makes sure that it is what the feed says, and of the
  /// same application as `current`. `.new` is gone when it was not possible.
  std::expected<void, std::string> unpack(const UpdateRelease& release, int archive) const;

  /// Makes `.new` the installed version, and what was installed `previous`.
  std::expected<void, std::string> exchange() const;

  /// Makes the version before the installed one the installed one again; the other is removed.
  std::expected<void, std::string> restore() const;

 private:
  explicit InstallationFolder(std::filesystem::path root, downloader::OwnFolder folder)
      : root_(std::move(root)), folder_(std::move(folder)) {}

  [[nodiscard]] std::expected<void, std::string> looksRight(const UpdateRelease& release) const;
  void removeTree(const char* name) const;

  std::filesystem::path root_;
  downloader::OwnFolder folder_;
};

}  // namespace murmel::updater
