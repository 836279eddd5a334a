#include "Shell/ApplicationFolders.h"

#include <optional>
#include <string_view>

namespace murmel {

namespace {

/// The base directory rules ignore a value that is not an absolute path.
std::optional<std::filesystem::path> absolutePath(const Environment& environment, std::string_view variable) {
  const auto value = environment.value(variable);
  if (!value || !value->starts_with('/')) return std::nullopt;
  return std::filesystem::path(*value);
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
  const auto runtime = absolutePath(environment, "XDG_RUNTIME_DIR");
  const auto temporary = absolutePath(environment, "TMPDIR");
  folders.temporary = runtime ? *runtime : temporary ? *temporary : std::filesystem::path("/tmp");
  return folders;
}

}  // namespace murmel
