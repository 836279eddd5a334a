#include "Platform/Linux/Confinement/Landlock.h"

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace murmel::confinement {

namespace {

/// The kernel's structure as of version 6; older kernels want the members that they do not know zero.
struct Handled {
  std::uint64_t files = 0;
  std::uint64_t network = 0;
  std::uint64_t scopes = 0;
};

/// Younger than this system's headers.
constexpr std::uint64_t truncate = std::uint64_t{1} << 14;

constexpr std::uint64_t reading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t writing = reading | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                  LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                  LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SYM |
                                  LANDLOCK_ACCESS_FS_REFER | truncate;
constexpr std::uint64_t ofFiles =
    LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | truncate;

Handled everythingKnown(int version, bool connects) {
  constexpr auto rights = [](int count) { return (std::uint64_t{1} << count) - 1; };
  // Rights on files that each version knows, counted.
  constexpr std::array<int, 5> fileRights{13, 14, 15, 15, 16};
  const auto index = static_cast<std::size_t>(std::min<int>(version, fileRights.size())) - 1;
  constexpr std::uint64_t bindOnly = 1;
  return {
      .files = rights(fileRights[index]),
      .network = version < 4 ? 0
                 : connects  ? bindOnly
                             : rights(2),
      .scopes = version >= 6 ? rights(2) : 0,  // abstract sockets, signals
  };
}

}  // namespace

int landlockVersion() {
  const auto version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  return version < 1 ? 0 : static_cast<int>(version);
}

LandlockRules::LandlockRules(int version, bool connects) {
  if (version < 1) return;
  const auto handled = everythingKnown(version, connects);
  handled_ = handled.files;
  ruleset_ =
      UniqueDescriptor(static_cast<int>(::syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0)));
}

bool LandlockRules::allow(const std::filesystem::path& path, std::uint64_t rights) {
  const UniqueDescriptor place(::open(path.c_str(), O_PATH | O_CLOEXEC));
  struct stat status {};
  if (!place || ::fstat(place.get(), &status) != 0) return true;
  if (!S_ISDIR(status.st_mode)) rights &= ofFiles;
  landlock_path_beneath_attr rule{};
  rule.allowed_access = rights & handled_;
  rule.parent_fd = place.get();
  return ::syscall(SYS_landlock_add_rule, ruleset_.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

bool LandlockRules::allowReading(const std::filesystem::path& path) {
  return allow(path, reading);
}

bool LandlockRules::allowReadingAndExecuting(const std::filesystem::path& path) {
  return allow(path, reading | LANDLOCK_ACCESS_FS_EXECUTE);
}

bool LandlockRules::allowWriting(const std::filesystem::path& path) {
  return allow(path, writing);
}

bool LandlockRules::allowMakingSockets(const std::filesystem::path& folder) {
  return allow(folder, LANDLOCK_ACCESS_FS_MAKE_SOCK);
}

bool LandlockRules::allowUsing(const std::filesystem::path& file) {
  return allow(file, LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | truncate);
}

bool imposeLandlock(int ruleset) {
  return ::syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
}

}  // namespace murmel::confinement
