#include "Platform/Linux/Process/PrivateRoot.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <linux/securebits.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace murmel {

namespace {

/// Any folder that is there: the new root is mounted over it for a moment, in sight of nobody.
constexpr const char* foundation = "/tmp";
constexpr const char* oldRootBelow = "/tmp/.old";
constexpr const char* oldRoot = "/.old";
constexpr const char* contents = "size=64k,nr_inodes=1k,mode=0755";

bool writeFile(const char* path, const char* text, std::size_t size) {
  const int file = ::open(path, O_WRONLY | O_CLOEXEC);
  const bool isWritten = file >= 0 && ::write(file, text, size) == static_cast<ssize_t>(size);
  const int error = errno;
  if (file >= 0) ::close(file);
  errno = error;
  return isWritten;
}

bool add(const char* path, std::uint64_t attributes, unsigned flags) {
  mount_attr wanted{};
  wanted.attr_set = attributes;
  return ::mount_setattr(AT_FDCWD, path, flags, &wanted, sizeof wanted) == 0;
}

bool isBelow(const std::filesystem::path& path, const std::filesystem::path& folder) {
  return std::ranges::mismatch(folder, path).in1 == folder.end();
}

/// What the old root is called may not be what somebody wants to see.
bool isUsable(const std::filesystem::path& path) {
  return path.is_absolute() && path != "/" && !isBelow(path, oldRoot);
}

}  // namespace

PrivateRoot::PrivateRoot(Isolation isolation)
    : cloneFlags_(CLONE_NEWUSER | CLONE_NEWNS | CLONE_NEWIPC | (isolation.network ? CLONE_NEWNET : 0) |
                  (isolation.processes ? CLONE_NEWPID : 0)) {
  const auto map = [](auto identifier) {
    return std::to_string(identifier) + " " + std::to_string(identifier) + " 1";
  };
  userMap_ = map(::geteuid());
  groupMap_ = map(::getegid());
}

void PrivateRoot::show(const std::filesystem::path& given, Access access) {
  std::error_code missing;
  const auto path = given.lexically_normal();
  const auto source = std::filesystem::canonical(path, missing);
  if (missing || !isUsable(path)) return;
  const bool isVisible = std::ranges::any_of(steps_, [&](const Step& step) {
    return step.kind == Step::Kind::mount && isBelow(path, step.path) &&
           (step.access == access || access == Access::read) && step.access != Access::device;
  });
  if (isVisible) return;
  std::filesystem::path folder;
  for (const auto& part : path.parent_path()) {
    folder /= part;
    if (folder != "/") steps_.push_back({.kind = Step::Kind::folder, .path = folder.string()});
  }
  const bool isFolder = std::filesystem::is_directory(source, missing);
  steps_.push_back({.kind = isFolder ? Step::Kind::folder : Step::Kind::file, .path = path.string()});
  steps_.push_back({.kind = Step::Kind::mount,
                    .path = path.string(),
                    .source = oldRoot + source.string(),
                    .access = access});
}

bool PrivateRoot::take(const Step& step) const {
  constexpr mode_t folderMode = 0755;
  constexpr mode_t fileMode = 0444;
  switch (step.kind) {
    case Step::Kind::folder:
      return ::mkdir(step.path.c_str(), folderMode) == 0 || errno == EEXIST;
    case Step::Kind::file: {
      const int file = ::open(step.path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, fileMode);
      if (file < 0) return false;
      ::close(file);
      return true;
    }
    case Step::Kind::mount:
      break;
  }
  if (::mount(step.source.c_str(), step.path.c_str(), nullptr, MS_BIND | MS_REC, nullptr) != 0) return false;
  if (step.access == Access::device) return true;
  const std::uint64_t readOnly = step.access == Access::read ? MOUNT_ATTR_RDONLY : 0;
  return add(step.path.c_str(), readOnly | MOUNT_ATTR_NOSUID | MOUNT_ATTR_NODEV, AT_RECURSIVE);
}

bool PrivateRoot::becomeSomebody() const {
  // Who may write here is asked of the copied memory's owner; the application's is nobody's to look into.
  const int dumpable = ::prctl(PR_GET_DUMPABLE, 0, 0, 0, 0);
  ::prctl(PR_SET_DUMPABLE, 1, 0, 0, 0);
  const bool isMapped = writeFile("/proc/self/setgroups", "deny", std::strlen("deny")) &&
                        writeFile("/proc/self/uid_map", userMap_.data(), userMap_.size()) &&
                        writeFile("/proc/self/gid_map", groupMap_.data(), groupMap_.size());
  const int error = errno;
  ::prctl(PR_SET_DUMPABLE, dumpable, 0, 0, 0);
  errno = error;
  return isMapped;
}

bool PrivateRoot::enter() const {
  constexpr mode_t ownerOnly = 0700;
  if (!becomeSomebody() || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
      ::mount("tmpfs", foundation, "tmpfs", MS_NOSUID | MS_NODEV | MS_NOEXEC, contents) != 0 ||
      ::mkdir(oldRootBelow, ownerOnly) != 0 || ::syscall(SYS_pivot_root, foundation, oldRootBelow) != 0 ||
      ::chdir("/") != 0)
    return false;
  for (const auto& step : steps_)
    if (!take(step)) return false;
  // The administrator of the new namespaces is as powerless after the exec as anybody.
  constexpr unsigned long nobodySpecial = SECBIT_NOROOT | SECBIT_NOROOT_LOCKED;
  return ::umount2(oldRoot, MNT_DETACH) == 0 && ::rmdir(oldRoot) == 0 && add("/", MOUNT_ATTR_RDONLY, 0) &&
         ::prctl(PR_SET_SECUREBITS, nobodySpecial, 0, 0, 0) == 0;
}

}  // namespace murmel
