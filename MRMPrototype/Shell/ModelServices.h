#pragma once

#include "LocalModels/SmartModelFiles.h"
#include "Models/DownloadRuntimePriority.h"
#include "Models/ModelDownloadClient.h"
#include "Models/ModelInventory.h"
#include "Models/ModelManager.h"
#include "Models/SmartModelManager.h"
#include "Platform/Linux/Files/FileWatch.h"
#include "Shell/Installation.h"
#include "Shell/ProcessServices.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// What leads a process that has an otherwise empty environment to the network.
std::vector<std::string> proxies(const Environment& environment);

/// Where the installed models lie.
std::filesystem::path modelStore(const ApplicationFolders& folders);

/// The files of models, the user's and those of this installation.
std::shared_ptr<ModelInventory> modelInventory(const Installation& installation);

/// How the downloader is started; nothing when this build has none that it may use.
std::optional<ModelDownloadClient::Configuration> downloaderConfiguration(const Installation& installation);

/// The models on this machine, and the downloader of more. Main thread.
class ModelServices final : public SmartModelFiles {
 public:
  /// Looks at what is installed at once.
  ModelServices(const ProcessServices& process, const Installation& installation);

  /// Nothing while it is not known yet.
  [[nodiscard]] std::optional<bool> readiness(SmartLocalModel model) const;
  [[nodiscard]] std::optional<std::filesystem::path> modelFile(SmartLocalModel model) const override;
  [[nodiscard]] std::optional<std::filesystem::path> russianModelDirectory() const override;

  /// For an application that stays: notices what other processes install, verify and remove.
  void follow(Executor& executor);

  /// The speech model that is recommended for this machine. False when there is none to download here.
  bool downloadSpeechModel();
  void cancelSpeechModelDownload();

  const std::shared_ptr<ModelInventory> inventory;  ///< for all who ask about files of models
  std::unique_ptr<ModelManager> speech;
  SmartModelManager smart;
  /// Absent when nothing can be downloaded.
  std::unique_ptr<ModelDownloadClient> downloads;
  std::unique_ptr<ModelDownloadPriorityCoordinator> priority;

 private:
  bool canRunDownload_;  ///< the recommended speech model
  Registration installed_;
  std::optional<FileWatch> watch_;
};

}  // namespace murmel
