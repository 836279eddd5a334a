#include "Platform/Linux/Files/MachineLock.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace murmel::machineLock {

namespace {

/// A name that only one socket can have, which goes with it, and which is no file.
struct Name {
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  socklen_t size = 0;

  [[nodiscard]] const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address); }
};

std::optional<Name> nameOf(int file) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return std::nullopt;
  const auto text = "app.murmel.lock-" + std::to_string(status.st_dev) + "-" + std::to_string(status.st_ino);
  Name name;
  std::memcpy(&name.address.sun_path[1], text.data(), text.size());
  name.size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
  return name;
}

UniqueDescriptor openSocket() {
  return UniqueDescriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
}

}  // namespace

bool isNeeded(int error) {
  return error == ENOLCK || error == ENOSYS || error == EOPNOTSUPP;
}

std::expected<UniqueDescriptor, int> take(int file) {
  const auto name = nameOf(file);
  auto socket = openSocket();
  if (!name || !socket) return std::unexpected(errno);
  if (::bind(socket.get(), name->get(), name->size) == 0) return socket;
  return std::unexpected(errno == EADDRINUSE ? EWOULDBLOCK : errno);
}

std::expected<UniqueDescriptor, int> takeWhereNeeded(const std::filesystem::path& folder) {
  const UniqueDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Whoever cannot open it cannot use it either, and says why.
  if (!opened || ::flock(opened.get(), LOCK_SH | LOCK_NB) == 0 || !isNeeded(errno)) return UniqueDescriptor();
  return take(opened.get());
}

bool isHeld(int file) {
  const auto name = nameOf(file);
  const auto socket = openSocket();
  return name && socket && ::connect(socket.get(), name->get(), name->size) == 0;
}

}  // namespace murmel::machineLock
