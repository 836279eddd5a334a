#include "Storage/FileAccess.h"

#include <algorithm>
#include <cerrno>
#include <tuple>

#include <fmt/core.h>

namespace murmel {

namespace {

constexpr std::string_view damagedSuffix = ".damaged";

std::filesystem::path withSuffix(const std::filesystem::path& file, std::string_view suffix) {
  auto path = file;
  path += suffix;
  return path;
}

FileResult<void> writeAll(FileSystem& files, int descriptor, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto written = files.write(descriptor, bytes);
    if (!written) return std::unexpected(written.error());
    bytes = bytes.subspan(*written);
  }
  return {};
}

FileResult<void> readAll(FileSystem& files, int descriptor, std::span<std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto count = files.read(descriptor, bytes);
    if (!count) return std::unexpected(count.error());
    if (*count == 0) return std::unexpected(EIO);
    bytes = bytes.subspan(*count);
  }
  return {};
}

FileResult<void> writeCopy(FileSystem& files, const std::filesystem::path& copy,
                           std::span<const std::uint8_t> bytes, const PrepareReplacement& prepare,
                           Durability durability) {
  auto descriptor = files.createNew(copy);
  if (!descriptor && descriptor.error() == EEXIST) {  // left by a crash
    if (const auto removed = files.remove(copy); !removed) return removed;
    descriptor = files.createNew(copy);
  }
  if (!descriptor) return std::unexpected(descriptor.error());
  if (const auto written = writeAll(files, descriptor->get(), bytes); !written) return written;
  if (prepare) {
    if (const auto prepared = prepare(copy); !prepared) return prepared;
  }
  return durability == Durability::machine ? files.synchronize(descriptor->get()) : FileResult<void>();
}

}  // namespace

FileResult<std::optional<std::vector<std::uint8_t>>> readWholeFile(FileSystem& files,
                                                                   const std::filesystem::path& file,
                                                                   std::uint64_t limit,
                                                                   std::span<const std::uint8_t> prefix) {
  const auto descriptor = files.openForReading(file);
  if (!descriptor) {
    if (descriptor.error() == ENOENT) return std::nullopt;
    return std::unexpected(descriptor.error());
  }
  const auto size = files.size(descriptor->get());
  if (!size) return std::unexpected(size.error());
  if (*size > limit) return std::unexpected(EFBIG);
  std::vector<std::uint8_t> bytes(std::min<std::uint64_t>(*size, prefix.size()));
  if (const auto start = readAll(files, descriptor->get(), bytes); !start)
    return std::unexpected(start.error());
  if (!std::ranges::equal(bytes, prefix)) return bytes;
  bytes.resize(*size);
  const auto rest = readAll(files, descriptor->get(), std::span(bytes).subspan(prefix.size()));
  if (!rest) return std::unexpected(rest.error());
  return bytes;
}

FileResult<void> writeNewFile(FileSystem& files, const std::filesystem::path& file,
                              std::span<const std::uint8_t> bytes) {
  const auto descriptor = files.createNew(file);
  if (!descriptor) return std::unexpected(descriptor.error());
  auto written = writeAll(files, descriptor->get(), bytes);
  if (!written) std::ignore = files.remove(file);
  return written;
}

FileResult<void> replaceFile(FileSystem& files, const std::filesystem::path& file,
                             std::span<const std::uint8_t> bytes, const PrepareReplacement& prepare,
                             Durability durability) {
  const auto copy = temporaryPath(file);
  if (const auto written = writeCopy(files, copy, bytes, prepare, durability); !written) {
    std::ignore = removeIfPresent(files, copy);  // what stays is removed before the next write
    return written;
  }
  if (const auto renamed = files.rename(copy, file); !renamed) {
    std::ignore = removeIfPresent(files, copy);
    return renamed;
  }
  return durability == Durability::machine ? files.synchronizeFolder(file.parent_path()) : FileResult<void>();
}

std::filesystem::path temporaryPath(const std::filesystem::path& file) {
  return withSuffix(file, ".new");
}

std::filesystem::path lockPath(const std::filesystem::path& file) {
  return withSuffix(file, ".lock");
}

FileResult<void> removeIfPresent(FileSystem& files, const std::filesystem::path& file) {
  const auto removed = files.remove(file);
  if (!removed && removed.error() != ENOENT) return removed;
  return {};
}

FileResult<std::filesystem::path> setFileAside(FileSystem& files, const std::filesystem::path& file) {
  auto aside = withSuffix(file, damagedSuffix);
  for (int number = 2;; ++number) {
    const auto taken = files.exists(aside);
    if (!taken) return std::unexpected(taken.error());
    if (!*taken) break;
    aside = withSuffix(file, fmt::format("{}-{}", damagedSuffix, number));
  }
  if (const auto renamed = files.rename(file, aside); !renamed) return std::unexpected(renamed.error());
  return aside;
}

FileResult<std::vector<std::filesystem::path>> filesSetAside(FileSystem& files,
                                                             const std::filesystem::path& file) {
  const auto names = files.names(file.parent_path());
  if (!names) return std::unexpected(names.error());
  const auto prefix = withSuffix(file.filename(), damagedSuffix).string();
  std::vector<std::filesystem::path> found;
  for (const auto& name : *names) {
    if (name.starts_with(prefix)) found.push_back(file.parent_path() / name);
  }
  return found;
}

}  // namespace murmel
