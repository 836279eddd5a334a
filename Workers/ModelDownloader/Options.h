#pragma once

#include "MRMDownloadManifest/ApprovedModelDownload.h"

#include <expected>
#include <filesystem>
#include <span>
#include <string>

namespace murmel::downloader {

/// What the downloader is started with: "--store FOLDER".
///
/// A development build also takes "--development-host URL" (an https address that replaces the model host),
/// "--development-certificates FILE" (authorities that replace the system's) and "--development-time-scale X"
/// (a factor for every wait), so that the tests can put a server of their own in the host's place. Any other
/// build refuses them: nothing at run time can send it elsewhere.
struct Options {
  std::filesystem::path store;  ///< absolute
  std::string host{modelHostBaseURL};
  std::filesystem::path certificates;
  double timeScale = 1;

  /// `arguments` without the program name. The error is one sentence.
  static std::expected<Options, std::string> parse(std::span<char* const> arguments);
};

}  // namespace murmel::downloader
