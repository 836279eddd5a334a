#include "Platform/Linux/Process/ProcessFacts.h"

#include <array>
#include <charconv>
#include <cstring>
#include <memory>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace murmel {

namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

std::string descriptorsOf(pid_t process) {
  return "/proc/" + std::to_string(process) + "/fd";
}

bool readsFrom(pid_t process, const std::string& pipe) {
  const Folder folder(::opendir(descriptorsOf(process).c_str()));
  if (!folder) return false;
  const int at = ::dirfd(folder.get());
  while (const auto* entry = ::readdir(folder.get())) {
    std::array<char, 64> target{};
    const auto length = ::readlinkat(at, entry->d_name, target.data(), target.size());
    if (length != static_cast<ssize_t>(pipe.size()) ||
        std::memcmp(target.data(), pipe.data(), pipe.size()) != 0)
      continue;
    // The mode of the link is that of the descriptor: the compositor may still hold the other end.
    struct stat link {};
    if (::fstatat(at, entry->d_name, &link, AT_SYMLINK_NOFOLLOW) == 0 && (link.st_mode & S_IRUSR) != 0)
      return true;
  }
  return false;
}

}  // namespace

pid_t readerOfPipe(int pipe, pid_t likely) {
  struct stat about {};
  if (::fstat(pipe, &about) != 0 || !S_ISFIFO(about.st_mode)) return 0;
  const auto name = "pipe:[" + std::to_string(about.st_ino) + "]";
  if (likely != 0 && readsFrom(likely, name)) return likely;
  const Folder processes(::opendir("/proc"));
  if (!processes) return 0;
  while (const auto* entry = ::readdir(processes.get())) {
    pid_t process = 0;
    const char* end = entry->d_name + std::strlen(entry->d_name);
    const auto [stopped, error] = std::from_chars(entry->d_name, end, process);
    if (error != std::errc{} || stopped != end || process == likely) continue;
    if (readsFrom(process, name)) return process;
  }
  return 0;
}

bool showsItsDescriptors(pid_t process) {
  return process != 0 && Folder(::opendir(descriptorsOf(process).c_str()));
}

}  // namespace murmel
