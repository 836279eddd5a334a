#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/UniqueDescriptor.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace murmel {

/// Tells when somebody, this process included, has changed, replaced or removed one of some files. Their
/// folders are watched, so a file need not be there; a folder that is not there yet is not. Main thread.
class FileWatch {
 public:
  /// Changes that follow each other faster are told once.
  static constexpr Duration quiet = std::chrono::milliseconds(100);

  FileWatch(Executor& executor, const std::vector<std::filesystem::path>& files,
            std::function<void()> changed);

 private:
  void read();

  Executor& executor_;
  std::function<void()> changed_;
  UniqueDescriptor inotify_;
  std::map<int, std::set<std::string>> names_;  ///< of the files in each watched folder
  Registration readable_;
  Registration telling_;
};

}  // namespace murmel
