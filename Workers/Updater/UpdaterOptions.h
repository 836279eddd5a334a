#pragma once

#include <expected>
#include <filesystem>
#include <span>
#include <string>

namespace murmel::updater {

/// One run does one thing.
enum class UpdaterTask {
  feed,      ///< fetch the list of updates
  download,  ///< fetch a release
  unpack,    ///< put a release that has arrived beside the installed version
  exchange,  ///< make it the installed version
  restore,   ///< make the version before the installed one again
};

/// What the updater is started with: the task, and but for "feed" "--root FOLDER", the folder of the
/// installation.
///
/// Where the feed is and who may sign it is compiled in. A development build also takes "--development-feed
/// URL",
/// "--development-key FINGERPRINT", "--development-certificates FILE" and "--development-time-scale X", so
/// that the tests can stand in; any other build refuses them.
struct UpdaterOptions {
  UpdaterTask task = UpdaterTask::feed;
  std::filesystem::path root;  ///< absolute
  std::string feedURL;
  std::string fingerprint;
  std::filesystem::path certificates;
  double timeScale = 1;

  /// `arguments` without the program name. The error is one sentence.
  static std::expected<UpdaterOptions, std::string> parse(std::span<char* const> arguments);
};

}  // namespace murmel::updater
