#pragma once

#include <string>
#include <string_view>

namespace murmel::downloader {

/// Why the disk did not do what was asked.
struct FileError {
  bool isDiskFull = false;
  std::string message;  ///< one sentence for the user

  /// `error` is an errno value; `doing` completes "cannot ...".
  static FileError from(std::string_view doing, int error);
};

}  // namespace murmel::downloader
