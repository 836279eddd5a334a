#pragma once

#include "Foundation/UniqueDescriptor.h"
#include "Workers/ModelDownloader/FileError.h"
#include "Workers/ModelDownloader/PartialFile.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel::downloader {

/// The store on the disk, as the downloader writes it: partial files in a folder of their own, and whole
/// files that appear in their places at once. One process at a time; where the file system has no locks,
/// whoever starts the processes sees to that.
class StoreFolder {
 public:
  /// Creates what is missing of `root`, private to the user, takes the store for this process and clears away
  /// what an interrupted installation left. The error is one sentence.
  static std::expected<StoreFolder, FileError> open(const std::filesystem::path& root);

  std::expected<PartialFile, FileError> partial(std::string_view sha256) const;

  /// How many bytes of a content have arrived, without opening it.
  [[nodiscard]] std::int64_t partialBytes(std::string_view sha256) const;
  void discardPartial(std::string_view sha256) const;

  /// Puts the bytes of `partial` into every one of `places` (relative to the root); the partial file is gone
  /// afterwards. A place holds the old file or the whole new one at any moment.
  std::expected<void, FileError> install(const PartialFile& partial,
                                         const std::vector<std::string>& places) const;
  /// Copies a whole file of the store to other places.
  std::expected<void, FileError> copy(const std::string& from, const std::vector<std::string>& places) const;

  /// Whether a regular file with that content, and that size where it is known, lies at `place`. Reads it.
  [[nodiscard]] bool holds(const std::string& place, std::string_view sha256,
                           std::optional<std::int64_t> byteCount) const;

  /// Bytes that an ordinary user may still write.
  [[nodiscard]] std::int64_t freeBytes() const;

  /// Removes the folder of partial files if it is empty.
  void tidy() const;

 private:
  explicit StoreFolder(OwnFolder root) : root_(std::move(root)) {}
  [[nodiscard]] std::expected<OwnFolder, FileError> partialFolder() const;
  std::expected<void, FileError> copyTo(const UniqueDescriptor& from, const std::string& place) const;
  [[nodiscard]] UniqueDescriptor read(const std::string& place) const;

  OwnFolder root_;  ///< locked
};

}  // namespace murmel::downloader
