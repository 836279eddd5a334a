#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/UniqueDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace murmel {

/// A result of a file operation; the error is an `errno` value.
template <class T>
using FileResult = std::expected<T, int>;

/// The system calls that keeping a file safely is made of, one function each, so that a test can fail or stop
/// at any of them. Interrupted calls are repeated by the implementation; short reads and writes are the
/// caller's. Thread-safe.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// A regular file; anything else (a folder, a device, a pipe) is EINVAL.
  virtual FileResult<UniqueDescriptor> openForReading(const std::filesystem::path& file) = 0;
  /// For writing, readable by the owner alone (0600) from the first moment; EEXIST when something is there.
  virtual FileResult<UniqueDescriptor> createNew(const std::filesystem::path& file) = 0;
  virtual FileResult<std::uint64_t> size(int descriptor) = 0;
  /// Number of bytes read, 0 at the end of the file.
  virtual FileResult<std::size_t> read(int descriptor, std::span<std::uint8_t> bytes) = 0;
  /// Number of bytes written, at least one.
  virtual FileResult<std::size_t> write(int descriptor, std::span<const std::uint8_t> bytes) = 0;
  /// Returns when the file's contents have reached the disk.
  virtual FileResult<void> synchronize(int descriptor) = 0;
  /// Returns when the names in a folder have reached the disk.
  virtual FileResult<void> synchronizeFolder(const std::filesystem::path& folder) = 0;

  /// Replaces what is at `to`.
  virtual FileResult<void> rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
  virtual FileResult<void> remove(const std::filesystem::path& file) = 0;
  /// Where a chain of links ends; the path itself when it is no link, or one that leads nowhere it can.
  virtual std::filesystem::path target(const std::filesystem::path& path) = 0;
  /// Whether anything is there, a dangling link included.
  virtual FileResult<bool> exists(const std::filesystem::path& path) = 0;
  /// Names in a folder; none when there is no folder.
  virtual FileResult<std::vector<std::string>> names(const std::filesystem::path& folder) = 0;
  /// With intermediate folders, each 0700; nothing to do for those that exist.
  virtual FileResult<void> makeFolders(const std::filesystem::path& folder) = 0;
  virtual FileResult<void> setPermissions(const std::filesystem::path& file, unsigned mode) = 0;
  /// Asks backup programs to leave the file out, as far as the file system can carry the wish.
  virtual void excludeFromBackups(const std::filesystem::path& file) = 0;

  /// Takes an exclusive lock on a file made for the purpose, held until the descriptor closes. Waits up to
  /// `limit` for another holder (any process), then EWOULDBLOCK.
  virtual FileResult<UniqueDescriptor> lock(const std::filesystem::path& file, Duration limit) = 0;
};

}  // namespace murmel
