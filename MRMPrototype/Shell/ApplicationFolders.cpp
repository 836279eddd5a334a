#include "Shell/ApplicationFolders.h"

#include <cstdlib>
#include <optional>
#include <string_view>

namespace murmel {

namespace {

/// The base directory rules ignore a value that is not an absolute path.
std::optional<std::filesystem::path> absolutePathFrom(const char* variable) {
  const char* value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): nobody writes the environment
  if (value == nullptr || !std::string_view(value).starts_with('/')) return std::nullopt;
  return std::filesystem::path(value);
}

}  // namespace

std::expected<ApplicationFolders, std::string> ApplicationFolders::locate() {
  std::error_code failure;
  ApplicationFolders folders;
  folders.executable = std::filesystem::read_symlink("/proc/self/exe", failure);
  if (failure) return std::unexpected("Cannot find this program's own file: " + failure.message());
  folders.resources = folders.executable.parent_path().parent_path() / "lib" / "murmel";

  const auto home = absolutePathFrom("HOME");
  const auto configuration = absolutePathFrom("XDG_CONFIG_HOME");
  const auto data = absolutePathFrom("XDG_DATA_HOME");
  if (!home && (!configuration || !data)) return std::unexpected("There is no home folder: HOME is not set.");
  folders.configuration = configuration ? *configuration : *home / ".config";
  folders.data = (data ? *data : *home / ".local" / "share") / "MRM";
  const auto runtime = absolutePathFrom("XDG_RUNTIME_DIR");
  folders.temporary = runtime ? *runtime : std::filesystem::temp_directory_path(failure);
  if (failure) folders.temporary = "/tmp";
  return folders;
}

}  // namespace murmel
