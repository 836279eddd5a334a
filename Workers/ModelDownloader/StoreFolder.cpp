#include "Workers/ModelDownloader/StoreFolder.h"

#include "Foundation/Crypto/Crypto.h"
#include "Foundation/WriteAll.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace murmel::downloader {

namespace {

constexpr std::string_view partialFolderName = ".downloads";
constexpr std::string_view copyName = "copy";
constexpr std::size_t copiedAtOnce = 1 << 20;

using Outcome = std::expected<void, FileError>;

std::unexpected<FileError> storeFailure(std::string_view doing) {
  return std::unexpected(FileError::from(doing, errno));
}

/// Calls `use` with every piece of the file. False when it cannot be read or `use` returns false.
template <class Use>
bool readThrough(int file, Use use) {
  std::vector<std::uint8_t> buffer(copiedAtOnce);
  while (true) {
    const auto count = ::read(file, buffer.data(), buffer.size());
    if (count == 0) return true;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 || !use(std::span<const std::uint8_t>(buffer).first(static_cast<std::size_t>(count))))
      return false;
  }
}

}  // namespace

std::expected<StoreFolder, FileError> StoreFolder::open(const std::filesystem::path& root) {
  auto folder = OwnFolder::open(root);
  if (!folder) return std::unexpected(folder.error());
  if (::flock(folder->descriptor(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
    return std::unexpected(FileError{false, "Another download into this folder is running."});
  StoreFolder store(*std::move(folder));
  const auto partial = store.partialFolder();
  if (!partial) return std::unexpected(partial.error());
  for (const auto& name : partial->names()) {
    if (!isPartialFileName(name)) partial->remove(name);
  }
  return store;
}

std::expected<OwnFolder, FileError> StoreFolder::partialFolder() const {
  return root_.belowForSure(std::string(partialFolderName));
}

std::expected<PartialFile, FileError> StoreFolder::partial(std::string_view sha256) const {
  auto folder = partialFolder();
  if (!folder) return std::unexpected(folder.error());
  return PartialFile::open(*std::move(folder), sha256);
}

std::int64_t StoreFolder::partialBytes(std::string_view sha256) const {
  const auto folder = root_.existing(std::string(partialFolderName));
  return folder ? folder->size(PartialFile::nameOf(sha256)) : 0;
}

void StoreFolder::discardPartial(std::string_view sha256) const {
  if (const auto folder = root_.existing(std::string(partialFolderName)))
    PartialFile::discard(*folder, sha256);
}

Outcome StoreFolder::install(const PartialFile& partial, const std::vector<std::string>& places) const {
  if (const auto synced = partial.sync(); !synced) return synced;
  for (std::size_t i = 0; i + 1 < places.size(); ++i) {
    if (const auto copied = copyTo(partial.folder().read(partial.name()), places[i]); !copied) return copied;
  }
  if (!places.empty()) {
    const std::filesystem::path place = places.back();
    const auto folder = root_.below(place.parent_path());
    if (!folder) return std::unexpected(folder.error());
    if (const auto moved = partial.folder().moveTo(partial.name(), *folder, place.filename()); !moved)
      return moved;
  }
  partial.discard();
  return {};
}

Outcome StoreFolder::copy(const std::string& from, const std::vector<std::string>& places) const {
  for (const auto& place : places) {
    if (const auto copied = copyTo(read(from), place); !copied) return copied;
  }
  return {};
}

Outcome StoreFolder::copyTo(const UniqueDescriptor& from, const std::string& place) const {
  if (!from) return storeFailure("read the model");
  const auto temporary = partialFolder();
  if (!temporary) return std::unexpected(temporary.error());
  const std::string name(copyName);
  temporary->remove(name);
  const auto target = temporary->create(name);
  if (!target) return storeFailure("write the model");
  const bool copied = readThrough(from.get(), [&](auto bytes) { return writeAll(target.get(), bytes); }) &&
                      ::fsync(target.get()) == 0;
  if (!copied) {
    const auto error = FileError::from("copy the model", errno);
    temporary->remove(name);
    return std::unexpected(error);
  }
  const std::filesystem::path whole = place;
  const auto folder = root_.below(whole.parent_path());
  if (!folder) {
    temporary->remove(name);
    return std::unexpected(folder.error());
  }
  auto moved = temporary->moveTo(name, *folder, whole.filename());
  if (!moved) temporary->remove(name);
  return moved;
}

UniqueDescriptor StoreFolder::read(const std::string& place) const {
  const std::filesystem::path whole = place;
  std::optional<OwnFolder> folder;
  for (const auto& part : whole.parent_path()) {
    folder = folder ? folder->existing(part) : root_.existing(part);
    if (!folder) return {};
  }
  return folder ? folder->read(whole.filename()) : root_.read(whole.filename());
}

bool StoreFolder::holds(const std::string& place, std::string_view sha256,
                        std::optional<std::int64_t> byteCount) const {
  const auto file = read(place);
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0 || (byteCount && *byteCount != status.st_size)) return false;
  crypto::Sha256 hash;
  const bool whole = readThrough(file.get(), [&](auto bytes) {
    hash.update(bytes);
    return true;
  });
  return whole && crypto::hexadecimal(hash.finish()) == sha256;
}

std::int64_t StoreFolder::freeBytes() const {
  struct statvfs status {};
  if (::fstatvfs(root_.descriptor(), &status) != 0) return 0;
  return static_cast<std::int64_t>(status.f_bavail) * static_cast<std::int64_t>(status.f_frsize);
}

void StoreFolder::tidy() const {
  root_.removeFolder(std::string(partialFolderName));
}

}  // namespace murmel::downloader
