#include "Workers/ModelDownloader/StoreFolder.h"

#include "Foundation/Crypto/Crypto.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace murmel::downloader {

namespace {

constexpr std::string_view partialFolderName = ".downloads";
constexpr std::string_view copyName = "copy";
constexpr std::size_t bufferSize = 1 << 20;

using Outcome = std::expected<void, FileError>;

std::unexpected<FileError> failure(std::string_view doing) {
  return std::unexpected(FileError::from(doing, errno));
}

/// Like create_directories, but private to the user.
Outcome createFolders(const std::filesystem::path& folder) {
  std::error_code error;
  if (std::filesystem::is_directory(folder, error)) return {};
  if (folder.has_parent_path() && folder.parent_path() != folder) {
    if (const auto parent = createFolders(folder.parent_path()); !parent) return parent;
  }
  if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) return failure("create the model folder");
  return {};
}

Outcome syncFolder(const std::filesystem::path& folder) {
  const UniqueDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some file systems cannot sync a folder; that is no reason to call an installed model failed.
  if (opened && ::fsync(opened.get()) != 0 && errno == EIO) return failure("write the model folder");
  return {};
}

UniqueDescriptor openRegular(const std::filesystem::path& path, struct stat& status) {
  UniqueDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
  if (file && (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))) file.reset();
  return file;
}

/// Calls `use` with every piece of the file. False when it cannot be read or `use` returns false.
template <class Use>
bool readThrough(int file, Use use) {
  std::vector<std::uint8_t> buffer(bufferSize);
  while (true) {
    const auto count = ::read(file, buffer.data(), buffer.size());
    if (count == 0) return true;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 || !use(std::span<const std::uint8_t>(buffer).first(static_cast<std::size_t>(count))))
      return false;
  }
}

bool writeAll(int file, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(file, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

std::expected<StoreFolder, FileError> StoreFolder::open(const std::filesystem::path& root) {
  if (const auto created = createFolders(root); !created) return std::unexpected(created.error());
  UniqueDescriptor lock(::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!lock) return failure("open the model folder");
  if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
    return std::unexpected(FileError{false, "Another download into this folder is running."});
  StoreFolder store(root, std::move(lock));
  if (const auto created = createFolders(store.partialFolder()); !created)
    return std::unexpected(created.error());
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(store.partialFolder(), error)) {
    if (!isPartialFileName(entry.path().filename().string())) std::filesystem::remove(entry.path(), error);
  }
  return store;
}

std::filesystem::path StoreFolder::partialFolder() const {
  return root_ / partialFolderName;
}

std::expected<PartialFile, FileError> StoreFolder::partial(std::string_view sha256) const {
  if (const auto created = createFolders(partialFolder()); !created) return std::unexpected(created.error());
  return PartialFile::open(partialFolder(), sha256);
}

std::int64_t StoreFolder::partialBytes(std::string_view sha256) const {
  struct stat status {};
  const auto path = PartialFile::pathIn(partialFolder(), sha256);
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
}

void StoreFolder::discardPartial(std::string_view sha256) const {
  PartialFile::discard(partialFolder(), sha256);
}

Outcome StoreFolder::install(const PartialFile& partial, const std::vector<std::string>& places) const {
  if (const auto synced = partial.sync(); !synced) return synced;
  for (std::size_t i = 0; i + 1 < places.size(); ++i) {
    if (const auto copied = copyTo(partial.path(), places[i]); !copied) return copied;
  }
  if (!places.empty()) {
    if (const auto moved = move(partial.path(), places.back()); !moved) return moved;
  }
  partial.discard();
  return {};
}

Outcome StoreFolder::copy(const std::string& from, const std::vector<std::string>& places) const {
  for (const auto& place : places) {
    if (const auto copied = copyTo(root_ / from, place); !copied) return copied;
  }
  return {};
}

Outcome StoreFolder::copyTo(const std::filesystem::path& from, const std::string& place) const {
  if (const auto created = createFolders(partialFolder()); !created) return created;
  const auto temporary = partialFolder() / copyName;
  struct stat status {};
  const auto source = openRegular(from, status);
  if (!source) return failure("read the model");
  UniqueDescriptor target(
      ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
  if (!target) return failure("write the model");
  const bool copied = readThrough(source.get(), [&](auto bytes) { return writeAll(target.get(), bytes); }) &&
                      ::fsync(target.get()) == 0;
  if (!copied) {
    const auto error = FileError::from("copy the model", errno);
    ::unlink(temporary.c_str());
    return std::unexpected(error);
  }
  auto moved = move(temporary, place);
  if (!moved) ::unlink(temporary.c_str());
  return moved;
}

Outcome StoreFolder::move(const std::filesystem::path& from, const std::string& place) const {
  const auto target = root_ / place;
  if (const auto created = createFolders(target.parent_path()); !created) return created;
  // Replaces a file or a link, never what a link points to.
  if (::rename(from.c_str(), target.c_str()) != 0) {
    if (errno == EISDIR || errno == ENOTEMPTY || errno == EEXIST)
      return std::unexpected(
          FileError{false, "A folder is where the model file belongs: " + target.string() + "."});
    return failure("put the model into its place");
  }
  return syncFolder(target.parent_path());
}

bool StoreFolder::holds(const std::string& place, std::string_view sha256,
                        std::optional<std::int64_t> byteCount) const {
  struct stat status {};
  const auto file = openRegular(root_ / place, status);
  if (!file || (byteCount && *byteCount != status.st_size)) return false;
  crypto::Sha256 hash;
  const bool whole = readThrough(file.get(), [&](auto bytes) {
    hash.update(bytes);
    return true;
  });
  return whole && crypto::hexadecimal(hash.finish()) == sha256;
}

std::int64_t StoreFolder::freeBytes() const {
  struct statvfs status {};
  if (::fstatvfs(lock_.get(), &status) != 0) return 0;
  return static_cast<std::int64_t>(status.f_bavail) * static_cast<std::int64_t>(status.f_frsize);
}

void StoreFolder::tidy() const {
  ::rmdir(partialFolder().c_str());
}

}  // namespace murmel::downloader
