#include "LocalModels/QwenServerPlace.h"

#include "Foundation/Uuid.h"
#include "LocalModels/LocalUnixHTTP.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace murmel {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = "mrm-q-";
constexpr std::string_view socketSuffix = ".sock";
constexpr std::size_t digitCount = 8;
constexpr mode_t ownerOnly = 0700;

/// A folder of this user that nobody else can enter, open; nothing for any other thing.
UniqueDescriptor openPrivateFolder(const fs::path& path) {
  UniqueDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW));
  struct stat status {};
  constexpr mode_t othersRights = S_IRWXG | S_IRWXO;
  if (!folder || ::fstat(folder.get(), &status) != 0 || status.st_uid != ::geteuid() ||
      (status.st_mode & othersRights) != 0) {
    return {};
  }
  return folder;
}

bool isPlaceName(std::string_view name) {
  return name.size() == prefix.size() + digitCount && name.starts_with(prefix) &&
         name.find_first_not_of("0123456789ABCDEF", prefix.size()) == std::string_view::npos;
}

void removePlace(const fs::path& folder) {
  std::error_code ignored;  // What cannot be removed now is tried again at the next start.
  fs::remove(folder.native() + std::string(socketSuffix), ignored);
  fs::remove_all(folder, ignored);
}

/// The folder, when it is this user's and no living process holds it.
UniqueDescriptor lockedFolder(const fs::path& path) {
  auto folder = openPrivateFolder(path);
  if (!folder || ::flock(folder.get(), LOCK_EX | LOCK_NB) != 0) return {};
  struct stat opened {};
  struct stat named {};
  // Somebody may have removed it between the opening and the lock.
  if (::fstat(folder.get(), &opened) != 0 || ::lstat(path.c_str(), &named) != 0 ||
      opened.st_ino != named.st_ino || opened.st_dev != named.st_dev) {
    return {};
  }
  return folder;
}

void removeStalePlaces(const fs::path& folder) {
  std::error_code ignored;
  std::vector<fs::path> found;
  for (fs::directory_iterator entries(folder, ignored), end; !ignored && entries != end;
       entries.increment(ignored)) {
    if (isPlaceName(entries->path().filename().native())) found.push_back(entries->path());
  }
  for (const auto& path : found) {
    if (const auto lock = lockedFolder(path)) removePlace(path);
  }
}

}  // namespace

std::expected<QwenServerPlace, std::string> QwenServerPlace::create(const fs::path& temporaryDirectory) {
  if (!openPrivateFolder(temporaryDirectory))
    return std::unexpected("private temporary directory unavailable");
  removeStalePlaces(temporaryDirectory);
  constexpr int attempts = 8;  // A taken name is a matter of one in four thousand millions.
  for (int attempt = 0; attempt < attempts; ++attempt) {
    const auto directory =
        temporaryDirectory / (std::string(prefix) + Uuid::random().text().substr(0, digitCount));
    const fs::path socket = directory.native() + std::string(socketSuffix);
    if (socket.native().size() > LocalUnixHTTP::longestSocketPath)
      return std::unexpected("private socket path is too long");
    if (::mkdir(directory.c_str(), ownerOnly) != 0) {
      if (errno == EEXIST) continue;
      break;
    }
    auto lock = lockedFolder(directory);
    if (!lock) continue;  // Another process took it for one left behind.
    ::unlink(socket.c_str());
    return QwenServerPlace(socket, directory, std::move(lock));
  }
  return std::unexpected("private temporary directory unavailable");
}

QwenServerPlace::QwenServerPlace(fs::path socketURL, fs::path keyDirectory, UniqueDescriptor lock)
    : socketURL_(std::move(socketURL)), keyDirectory_(std::move(keyDirectory)), lock_(std::move(lock)) {}

QwenServerPlace::~QwenServerPlace() {
  if (lock_) removePlace(keyDirectory_);
}

}  // namespace murmel
