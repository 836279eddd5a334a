#pragma once

#include "Foundation/Async/Executor.h"
#include "Models/ModelDownloadClient.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace murmel {

/// The release probe behind "--mrm-model-download-smoke": fetches the smallest file of the manifest with the
/// downloader that is installed, into a folder of its own, and looks whether the right bytes arrived. Main
/// thread.
class ModelDownloadProbe {
 public:
  /// What it fetches: two bytes.
  static constexpr std::string_view identifier = "parakeet:config.json";

  /// The exit statuses of the process.
  enum Status : int {
    passed = 0,
    failed = 1,       ///< the downloader does not work, or what it installed is wrong
    unreachable = 3,  ///< the model host could not be reached: this says nothing about the release
  };

  /// `configuration.store` is replaced by a fresh folder below `temporary`, which is removed afterwards.
  ModelDownloadProbe(Executor& executor, ProcessLauncher& launcher,
                     ModelDownloadClient::Configuration configuration,
                     const std::filesystem::path& temporary);
  ~ModelDownloadProbe();

  /// `done` gets the status and one line that says why, once.
  void run(std::function<void(Status status, std::string line)> done);

 private:
  void changed(const ModelDownloadStatus& status);
  void finish(Status status, std::string line);

  Executor& executor_;
  std::filesystem::path store_;
  std::optional<ModelDownloadClient> client_;  ///< ended before the folder goes
  Registration changes_;
  std::function<void(Status, std::string)> done_;
};

}  // namespace murmel
