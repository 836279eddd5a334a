#pragma once

#include "Foundation/Async/Executor.h"
#include "LocalModels/SmartModelFiles.h"
#include "Models/DownloadRuntimePriority.h"
#include "Models/ModelDownloadClient.h"
#include "Models/ModelManager.h"
#include "Models/SmartModelManager.h"
#include "Platform/ProcessLauncher.h"
#include "Product/InformationDictionary.h"
#include "Shell/ApplicationFolders.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace murmel {

/// Where the installed models lie.
std::filesystem::path modelStore(const ApplicationFolders& folders);

/// How the downloader is started; nothing when this build has none that it may use.
std::optional<ModelDownloadClient::Configuration> downloaderConfiguration(const ApplicationFolders& folders,
                                                                          const InformationDictionary& info);

/// The models on this machine, and the downloader of more. Main thread.
class ModelServices final : public SmartModelFiles {
 public:
  /// Looks at what is installed at once. Executor and launcher must outlive this.
  ModelServices(Executor& executor, ProcessLauncher& launcher, const ApplicationFolders& folders,
                const InformationDictionary& info);

  [[nodiscard]] bool isReady(SmartLocalModel model) const;
  [[nodiscard]] std::optional<std::filesystem::path> modelFile(SmartLocalModel model) const override;
  [[nodiscard]] std::optional<std::filesystem::path> russianModelDirectory() const override;

  /// The speech model that is recommended for this machine. False when there is none to download here.
  bool downloadSpeechModel();
  void cancelSpeechModelDownload();

  std::unique_ptr<ModelManager> speech;
  SmartModelManager smart;
  /// Absent when nothing can be downloaded.
  std::unique_ptr<ModelDownloadClient> downloads;
  std::unique_ptr<ModelDownloadPriorityCoordinator> priority;

 private:
  bool canRunParakeet_;
  Registration installed_;
};

}  // namespace murmel
