#include "Shell/InstanceLock.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace murmel {

namespace {

/// Of the open file, not of the process: closing another descriptor of it releases nothing.
struct flock wholeFile(short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  return lock;
}

}  // namespace

std::expected<std::optional<InstanceLock>, std::string> InstanceLock::take(
    const std::filesystem::path& file) {
  constexpr mode_t ownerOnly = 0600;
  UniqueDescriptor descriptor(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, ownerOnly));
  auto lock = wholeFile(F_WRLCK);
  if (descriptor.get() >= 0 && ::fcntl(descriptor.get(), F_OFD_SETLK, &lock) == 0) {
    return std::optional(InstanceLock(std::move(descriptor)));
  }
  if (descriptor.get() >= 0 && (errno == EAGAIN || errno == EACCES)) return std::nullopt;
  return std::unexpected("Cannot lock " + file.string() + ": " + std::strerror(errno));
}

bool InstanceLock::isHeld(const std::filesystem::path& file) {
  const UniqueDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  if (descriptor.get() < 0) return false;
  auto lock = wholeFile(F_WRLCK);
  return ::fcntl(descriptor.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

std::filesystem::path InstanceLock::fileOf(const Installation& installation) {
  // The user is named because the runtime folder may be the common temporary one.
  return installation.folders.temporary /
         (installation.identifier + "-" + std::to_string(::getuid()) + ".lock");
}

}  // namespace murmel
