#include "Platform/Linux/Files/PosixFileSystem.h"

#include "Platform/Linux/Files/MachineLock.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>
#include <thread>

#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace murmel {

namespace {

using namespace std::chrono_literals;

constexpr auto lockRetryInterval = 5ms;

/// Repeats an interrupted call; -1 becomes the error.
template <class Call>
auto checked(Call call) -> FileResult<decltype(call())> {
  while (true) {
    const auto result = call();
    if (result >= 0) return result;
    if (errno != EINTR) return std::unexpected(errno);
  }
}

FileResult<void> withoutValue(const FileResult<int>& result) {
  if (!result) return std::unexpected(result.error());
  return {};
}

FileResult<UniqueDescriptor> openDescriptor(const std::filesystem::path& path, int flags, mode_t mode = 0) {
  const auto opened = checked([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); });
  if (!opened) return std::unexpected(opened.error());
  return UniqueDescriptor(*opened);
}

}  // namespace

FileResult<UniqueDescriptor> PosixFileSystem::openForReading(const std::filesystem::path& file) {
  // Without O_NONBLOCK a named pipe in the file's place would hold the application up for ever.
  auto descriptor = openDescriptor(file, O_RDONLY | O_NONBLOCK);
  if (!descriptor) return descriptor;
  struct stat status {};
  if (::fstat(descriptor->get(), &status) != 0) return std::unexpected(errno);
  if (!S_ISREG(status.st_mode)) return std::unexpected(EINVAL);
  return descriptor;
}

FileResult<UniqueDescriptor> PosixFileSystem::createNew(const std::filesystem::path& file) {
  return openDescriptor(file, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, S_IRUSR | S_IWUSR);
}

FileResult<std::uint64_t> PosixFileSystem::size(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) return std::unexpected(errno);
  return static_cast<std::uint64_t>(status.st_size);
}

FileResult<std::size_t> PosixFileSystem::read(int descriptor, std::span<std::uint8_t> bytes) {
  const auto count = checked([&] { return ::read(descriptor, bytes.data(), bytes.size()); });
  if (!count) return std::unexpected(count.error());
  return static_cast<std::size_t>(*count);
}

FileResult<std::size_t> PosixFileSystem::write(int descriptor, std::span<const std::uint8_t> bytes) {
  const auto count = checked([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
  if (!count) return std::unexpected(count.error());
  if (*count == 0 && !bytes.empty()) return std::unexpected(EIO);
  return static_cast<std::size_t>(*count);
}

FileResult<void> PosixFileSystem::synchronize(int descriptor) {
  return withoutValue(checked([&] { return ::fsync(descriptor); }));
}

FileResult<void> PosixFileSystem::synchronizeFolder(const std::filesystem::path& folder) {
  const auto descriptor = openDescriptor(folder, O_RDONLY | O_DIRECTORY);
  if (!descriptor) return std::unexpected(descriptor.error());
  return synchronize(descriptor->get());
}

FileResult<void> PosixFileSystem::rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  return withoutValue(checked([&] { return ::rename(from.c_str(), to.c_str()); }));
}

FileResult<void> PosixFileSystem::remove(const std::filesystem::path& file) {
  return withoutValue(checked([&] { return ::unlink(file.c_str()); }));
}

std::filesystem::path PosixFileSystem::target(const std::filesystem::path& path) {
  constexpr int mostLinks = 40;  // what the kernel follows
  auto end = path;
  for (int link = 0; link < mostLinks; ++link) {
    std::error_code error;
    const auto next = std::filesystem::read_symlink(end, error);
    if (error) return end;
    end = end.parent_path() / next;
  }
  return path;
}

FileResult<bool> PosixFileSystem::exists(const std::filesystem::path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) == 0) return true;
  if (errno == ENOENT || errno == ENOTDIR) return false;
  return std::unexpected(errno);
}

FileResult<std::vector<std::string>> PosixFileSystem::names(const std::filesystem::path& folder) {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(folder.c_str()), &::closedir);
  if (!directory) {
    if (errno == ENOENT || errno == ENOTDIR) return std::vector<std::string>{};
    return std::unexpected(errno);
  }
  std::vector<std::string> names;
  while (true) {
    errno = 0;
    const auto* const entry = ::readdir(directory.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  if (errno != 0) return std::unexpected(errno);
  return names;
}

FileResult<void> PosixFileSystem::makeFolders(const std::filesystem::path& folder) {
  if (::mkdir(folder.c_str(), S_IRWXU) == 0) return {};
  if (errno == ENOENT && folder.has_parent_path() && folder.parent_path() != folder) {
    if (const auto parent = makeFolders(folder.parent_path()); !parent) return parent;
    if (::mkdir(folder.c_str(), S_IRWXU) == 0) return {};
  }
  if (errno != EEXIST) return std::unexpected(errno);
  struct stat status {};
  if (::stat(folder.c_str(), &status) != 0) return std::unexpected(errno);
  if (!S_ISDIR(status.st_mode)) return std::unexpected(ENOTDIR);
  return {};
}

FileResult<void> PosixFileSystem::setPermissions(const std::filesystem::path& file, unsigned mode) {
  return withoutValue(checked([&] { return ::chmod(file.c_str(), mode); }));
}

void PosixFileSystem::excludeFromBackups(const std::filesystem::path& file) {
  // The common attribute of freedesktop.org, and the flag of dump(8) that other programs honour too. A file
  // system without either has no way to say it.
  constexpr std::string_view no = "false";
  (void)::setxattr(file.c_str(), "user.xdg.robots.backup", no.data(), no.size(), 0);
  const auto descriptor = openDescriptor(file, O_RDONLY | O_NONBLOCK);
  int flags = 0;
  if (!descriptor || ::ioctl(descriptor->get(), FS_IOC_GETFLAGS, &flags) != 0) return;
  flags |= FS_NODUMP_FL;
  (void)::ioctl(descriptor->get(), FS_IOC_SETFLAGS, &flags);
}

FileResult<UniqueDescriptor> PosixFileSystem::lock(const std::filesystem::path& file, Duration limit) {
  auto descriptor = openDescriptor(file, O_RDWR | O_CREAT | O_NOFOLLOW, S_IRUSR | S_IWUSR);
  if (!descriptor) return descriptor;
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (true) {
    const auto locked = checked([&] { return ::flock(descriptor->get(), LOCK_EX | LOCK_NB); });
    if (locked) return descriptor;
    int error = locked.error();
    if (machineLock::isNeeded(error)) {
      auto instead = machineLock::take(descriptor->get());
      if (instead) return *std::move(instead);
      error = instead.error();
    }
    if (error != EWOULDBLOCK || std::chrono::steady_clock::now() >= deadline) return std::unexpected(error);
    std::this_thread::sleep_for(lockRetryInterval);
  }
}

}  // namespace murmel
