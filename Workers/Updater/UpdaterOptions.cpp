#include "Workers/Updater/UpdaterOptions.h"

#include "MRMUpdatePolicy/ReleaseKey.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>

namespace murmel::updater {

namespace {

#if defined(MURMEL_DEVELOPMENT)
constexpr bool isDevelopment = true;
#else
constexpr bool isDevelopment = false;
#endif

std::optional<UpdaterTask> taskNamed(std::string_view name) {
  constexpr std::array<std::pair<std::string_view, UpdaterTask>, 5> tasks{{
      {"feed", UpdaterTask::feed},
      {"download", UpdaterTask::download},
      {"unpack", UpdaterTask::unpack},
      {"exchange", UpdaterTask::exchange},
      {"restore", UpdaterTask::restore},
  }};
  for (const auto& [word, task] : tasks) {
    if (word == name) return task;
  }
  return std::nullopt;
}

bool takeDevelopmentOption(UpdaterOptions& options, std::string_view name, const std::string& value) {
  if (!isDevelopment) return false;
  if (name == "--development-feed") {
    options.feedURL = value;
    return true;
  }
  if (name == "--development-key") {
    options.fingerprint = value;
    return true;
  }
  if (name == "--development-certificates") {
    options.certificates = value;
    return true;
  }
  if (name == "--development-time-scale") {
    options.timeScale = std::strtod(value.c_str(), nullptr);
    return options.timeScale > 0 && options.timeScale <= 1;
  }
  return false;
}

}  // namespace

std::expected<UpdaterOptions, std::string> UpdaterOptions::parse(std::span<char* const> arguments) {
  UpdaterOptions options;
  options.feedURL = updateFeedURL();
  options.fingerprint = releaseKeyFingerprint();
  const auto task = arguments.empty() ? std::nullopt : taskNamed(arguments.front());
  if (!task) return std::unexpected("The updater was not told what to do.");
  options.task = *task;
  for (std::size_t i = 1; i < arguments.size(); i += 2) {
    const std::string_view name = arguments[i];
    if (i + 1 == arguments.size()) return std::unexpected("An argument lacks its value.");
    const std::string value = arguments[i + 1];
    if (name == "--root") {
      options.root = value;
    } else if (!takeDevelopmentOption(options, name, value)) {
      return std::unexpected("An argument is not known.");
    }
  }
  if (options.task != UpdaterTask::feed && !options.root.is_absolute())
    return std::unexpected("The folder of the installation is not given as an absolute path.");
  if (options.fingerprint.empty() || !options.feedURL.starts_with("https://"))
    return std::unexpected("This build does not know where its updates come from.");
  return options;
}

}  // namespace murmel::updater
