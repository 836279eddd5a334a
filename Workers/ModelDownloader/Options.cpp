#include "Workers/ModelDownloader/Options.h"

#include <cstdlib>
#include <string_view>

namespace murmel::downloader {

namespace {

#if defined(MURMEL_DEVELOPMENT)
constexpr bool isDevelopment = true;
#else
constexpr bool isDevelopment = false;
#endif

bool takeDevelopmentOption(Options& options, std::string_view name, const std::string& value) {
  if (!isDevelopment) return false;
  if (name == "--development-host" && value.starts_with("https://") && value.ends_with('/')) {
    options.host = value;
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

std::expected<Options, std::string> Options::parse(std::span<char* const> arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); i += 2) {
    const std::string_view name = arguments[i];
    if (i + 1 == arguments.size()) return std::unexpected("An argument lacks its value.");
    const std::string value = arguments[i + 1];
    if (name == "--store") {
      options.store = value;
    } else if (!takeDevelopmentOption(options, name, value)) {
      return std::unexpected("An argument is not known.");
    }
  }
  if (!options.store.is_absolute())
    return std::unexpected("The model folder is not given as an absolute path.");
  return options;
}

}  // namespace murmel::downloader
