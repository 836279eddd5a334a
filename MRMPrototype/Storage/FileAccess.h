#pragma once

#include "Platform/FileSystem.h"

#include <functional>
#include <optional>

namespace murmel {

/// The bytes of a file, or nothing when there is no file. EFBIG when it is larger than `limit`, EIO when it
/// ends before its size. A file that does not begin with `prefix` is not read any further: it gives the bytes
/// that were compared.
FileResult<std::optional<std::vector<std::uint8_t>>> readWholeFile(FileSystem& files,
                                                                   const std::filesystem::path& file,
                                                                   std::uint64_t limit,
                                                                   std::span<const std::uint8_t> prefix = {});

/// Called with the finished copy, before it takes the file's place; an error abandons the copy.
using PrepareReplacement = std::function<FileResult<void>(const std::filesystem::path& copy)>;

enum class Durability {
  machine,  ///< survives a power failure
  process,  ///< survives the end of the process
};

/// Puts `bytes` in the place of `file` in one step: whenever the process or the machine stops, the file is
/// the old one or the new one. After an error it is the old one, unless the last step failed: then it is the
/// new one, and nobody knows which of them a power failure would leave.
///
/// The copy is made beside the file, under a name of its own (`temporaryPath`); only one writer at a time may
/// be at work, so the caller holds a lock.
FileResult<void> replaceFile(FileSystem& files, const std::filesystem::path& file,
                             std::span<const std::uint8_t> bytes, const PrepareReplacement& prepare = {},
                             Durability durability = Durability::machine);

/// A new file for the owner alone. EEXIST when something is there; after another error nothing is.
FileResult<void> writeNewFile(FileSystem& files, const std::filesystem::path& file,
                              std::span<const std::uint8_t> bytes);

/// Where `replaceFile` makes its copy: what a crash may leave behind.
std::filesystem::path temporaryPath(const std::filesystem::path& file);

/// The lock of a file's writers.
std::filesystem::path lockPath(const std::filesystem::path& file);

/// Removes a file that may not be there.
FileResult<void> removeIfPresent(FileSystem& files, const std::filesystem::path& file);

/// Renames a damaged file to a name of its own beside it, which nothing here overwrites: "<name>.damaged",
/// then
/// "<name>.damaged-2" and so on. Gives the new name.
FileResult<std::filesystem::path> setFileAside(FileSystem& files, const std::filesystem::path& file);

/// The copies of `file` that were set aside.
FileResult<std::vector<std::filesystem::path>> filesSetAside(FileSystem& files,
                                                             const std::filesystem::path& file);

}  // namespace murmel
