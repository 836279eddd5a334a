#include "Shell/ApplicationFolders.h"

#include "Platform/Linux/Files/PosixFileSystem.h"

#include <optional>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

namespace murmel {

namespace {

/// The base directory rules ignore a value that is not an absolute path.
std::optional<std::filesystem::path> absolutePath(const Environment& environment, std::string_view variable) {
  const auto value = environment.value(variable);
  if (!value || !value->starts_with('/')) return std::nullopt;
  return std::filesystem::path(*value);
}

/// A folder of this user that nobody else can enter; what a link leads to can be exchanged.
bool isPrivate(const std::filesystem::path& folder) {
  struct stat status {};
  constexpr mode_t othersRights = S_IRWXG | S_IRWXO;
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
         (status.st_mode & othersRights) == 0;
}

std::filesystem::path runtimeFolder(const Environment& environment, const std::filesystem::path& data) {
  if (const auto given = absolutePath(environment, "XDG_RUNTIME_DIR"); given && isPrivate(*given))
    return *given;
  if (auto systems = std::filesystem::path("/run/user") / std::to_string(::geteuid()); isPrivate(systems))
    return systems;
  auto own = data / "run";
  // Whoever needs it says why it is not there.
  if (!isPrivate(own) && PosixFileSystem().makeFolders(own)) ::chmod(own.c_str(), S_IRWXU);
  return own;
}

}  // namespace

std::filesystem::path ApplicationFolders::thisExecutable() {
  std::error_code failure;
  // Without /proc nothing can be started, and nothing is found: what needs the path says so.
  return std::filesystem::read_symlink("/proc/self/exe", failure);
}

std::filesystem::path ApplicationFolders::resourcesOf(const std::filesystem::path& executable) {
  return executable.parent_path().parent_path() / "lib" / "murmel";
}

std::expected<ApplicationFolders, std::string> ApplicationFolders::locate(const Environment& environment) {
  ApplicationFolders folders;
  folders.executable = thisExecutable();
  folders.resources = resourcesOf(folders.executable);

  const auto home = absolutePath(environment, "HOME");
  const auto configuration = absolutePath(environment, "XDG_CONFIG_HOME");
  const auto data = absolutePath(environment, "XDG_DATA_HOME");
  if (!home && (!configuration || !data)) return std::unexpected("There is no home folder: HOME is not set.");
  folders.configuration = configuration ? *configuration : *home / ".config";
  folders.data = (data ? *data : *home / ".local" / "share") / "MRM";
  folders.temporary = runtimeFolder(environment, folders.data);
  return folders;
}

}  // namespace murmel
