#include "Workers/ModelDownloader/OwnFolder.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace murmel::downloader {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
// A pipe in a file's place must not hold anybody up, a terminal must not become ours.
constexpr int fileFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;

std::unexpected<FileError> failure(std::string_view doing) {
  return std::unexpected(FileError::from(doing, errno));
}

std::expected<void, FileError> createFolders(const std::filesystem::path& folder) {
  std::error_code error;
  if (std::filesystem::is_directory(folder, error)) return {};
  if (folder.has_parent_path() && folder.parent_path() != folder) {
    if (const auto parent = createFolders(folder.parent_path()); !parent) return parent;
  }
  if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) return failure("create the model folder");
  return {};
}

bool isPlain(int file, bool mustHaveOneName) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return false;
  return S_ISREG(status.st_mode) && (!mustHaveOneName || status.st_nlink == 1);
}

}  // namespace

std::expected<OwnFolder, FileError> OwnFolder::open(const std::filesystem::path& path) {
  if (const auto created = createFolders(path); !created) return std::unexpected(created.error());
  UniqueDescriptor descriptor(::open(path.c_str(), folderFlags));
  if (!descriptor) return failure("open the model folder");
  return OwnFolder(std::move(descriptor));
}

std::expected<OwnFolder, FileError> OwnFolder::below(const std::filesystem::path& path) const {
  UniqueDescriptor folder(::fcntl(descriptor(), F_DUPFD_CLOEXEC, 0));
  for (const auto& part : path) {
    if (::mkdirat(folder.get(), part.c_str(), S_IRWXU) != 0 && errno != EEXIST)
      return failure("create the model folder");
    UniqueDescriptor next(::openat(folder.get(), part.c_str(), folderFlags | O_NOFOLLOW));
    if (!next && (errno == ELOOP || errno == ENOTDIR))
      return std::unexpected(FileError{
          false, "Something else is where the folder " + part.string() + " of the model store belongs."});
    if (!next) return failure("open the model folder");
    folder = std::move(next);
  }
  if (!folder) return failure("open the model folder");
  return OwnFolder(std::move(folder));
}

std::expected<OwnFolder, FileError> OwnFolder::belowForSure(const std::string& name) const {
  struct stat status {};
  if (::fstatat(descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && !S_ISDIR(status.st_mode))
    remove(name);
  return below(name);
}

std::optional<OwnFolder> OwnFolder::existing(const std::string& name) const {
  UniqueDescriptor folder(::openat(descriptor(), name.c_str(), folderFlags | O_NOFOLLOW));
  if (!folder) return std::nullopt;
  return OwnFolder(std::move(folder));
}

UniqueDescriptor OwnFolder::read(const std::string& name) const {
  UniqueDescriptor file(::openat(descriptor(), name.c_str(), O_RDONLY | fileFlags));
  if (file && !isPlain(file.get(), false)) {
    errno = EINVAL;
    file.reset();
  }
  return file;
}

UniqueDescriptor OwnFolder::write(const std::string& name) const {
  UniqueDescriptor file(::openat(descriptor(), name.c_str(), O_RDWR | fileFlags));
  if (file && isPlain(file.get(), true)) return file;
  if (!file && errno != ENOENT && errno != ELOOP && errno != ENXIO && errno != EACCES) return file;
  file.reset();
  remove(name);
  return create(name);
}

UniqueDescriptor OwnFolder::create(const std::string& name) const {
  return UniqueDescriptor(
      ::openat(descriptor(), name.c_str(), O_RDWR | O_CREAT | O_EXCL | fileFlags, S_IRUSR | S_IWUSR));
}

std::int64_t OwnFolder::size(const std::string& name) const {
  struct stat status {};
  const bool isThere = ::fstatat(descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
  return isThere && S_ISREG(status.st_mode) ? status.st_size : 0;
}

void OwnFolder::remove(const std::string& name) const {
  ::unlinkat(descriptor(), name.c_str(), 0);
}

void OwnFolder::removeFolder(const std::string& name) const {
  ::unlinkat(descriptor(), name.c_str(), AT_REMOVEDIR);
}

std::vector<std::string> OwnFolder::names() const {
  std::vector<std::string> names;
  const int copy = ::openat(descriptor(), ".", folderFlags);
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(copy < 0 ? nullptr : ::fdopendir(copy), &::closedir);
  if (!folder) return names;
  while (const auto* const entry = ::readdir(folder.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  return names;
}

std::expected<void, FileError> OwnFolder::moveTo(const std::string& name, const OwnFolder& folder,
                                                 const std::string& newName) const {
  if (::renameat(descriptor(), name.c_str(), folder.descriptor(), newName.c_str()) != 0) {
    if (errno == EISDIR || errno == ENOTEMPTY || errno == EEXIST)
      return std::unexpected(FileError{false, "A folder is where the model file belongs: " + newName + "."});
    return failure("put the model into its place");
  }
  return folder.sync();
}

std::expected<void, FileError> OwnFolder::sync() const {
  // Some file systems cannot sync a folder; that is no reason to call an installed model failed.
  if (::fsync(descriptor()) != 0 && errno == EIO) return failure("write the model folder");
  return {};
}

}  // namespace murmel::downloader
