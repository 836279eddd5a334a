#include "Shell/InstanceLock.h"

#include "Foundation/WriteAll.h"
#include "Platform/Linux/Files/MachineLock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

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

std::filesystem::path fileOf(const Installation& installation) {
  return installation.folders.temporary / ("app.murmel-" + std::to_string(::getuid()) + ".lock");
}

}  // namespace

std::expected<std::optional<InstanceLock>, std::string> InstanceLock::take(const Installation& installation) {
  constexpr mode_t ownerOnly = 0600;
  const auto file = fileOf(installation);
  UniqueDescriptor descriptor(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, ownerOnly));
  auto lock = wholeFile(F_WRLCK);
  int error = descriptor && ::fcntl(descriptor.get(), F_OFD_SETLK, &lock) == 0 ? 0 : errno;
  UniqueDescriptor instead;
  if (descriptor && machineLock::isNeeded(error)) {
    auto taken = machineLock::take(descriptor.get());
    error = taken ? 0 : taken.error();
    if (taken) instead = *std::move(taken);
  }
  if (error == 0) {
    // The lock counts; the name is for those who ask, and a full disk does not matter.
    const auto content = installation.identifier + "\n" + screenOf(installation);
    if (::ftruncate(descriptor.get(), 0) == 0) (void)writeAll(descriptor.get(), content);
    return std::optional(InstanceLock(std::move(instead ? instead : descriptor)));
  }
  if (descriptor && (error == EAGAIN || error == EACCES)) return std::nullopt;
  return std::unexpected("Cannot lock " + file.string() + ": " + std::strerror(error));
}

std::string InstanceLock::screenOf(const Installation& installation) {
  if (const auto wayland = installation.environment.value("WAYLAND_DISPLAY")) return *wayland;
  auto display = installation.environment.value("DISPLAY").value_or("");
  // Behind the point stands the screen of the server.
  if (const auto colon = display.rfind(':'); colon != std::string::npos)
    display.resize(std::min(display.find('.', colon), display.size()));
  return display;
}

std::optional<InstanceLock::Holder> InstanceLock::holder(const Installation& installation) {
  const UniqueDescriptor descriptor(::open(fileOf(installation).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  if (descriptor.get() < 0) return std::nullopt;
  auto lock = wholeFile(F_WRLCK);
  const bool isHeld = ::fcntl(descriptor.get(), F_OFD_GETLK, &lock) == 0
                          ? lock.l_type != F_UNLCK
                          : machineLock::isNeeded(errno) && machineLock::isHeld(descriptor.get());
  if (!isHeld) return std::nullopt;
  std::array<char, 256> bytes{};
  const auto length = ::read(descriptor.get(), bytes.data(), bytes.size());
  const std::string_view content(bytes.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
  const auto end = std::min(content.find('\n'), content.size());
  return Holder{std::string(content.substr(0, end)),
                std::string(content.substr(std::min(end + 1, content.size())))};
}

bool InstanceLock::isHeldByEdition(const Installation& installation) {
  const auto running = holder(installation);
  return running && (running->identifier.empty() || running->identifier == installation.identifier);
}

}  // namespace murmel
