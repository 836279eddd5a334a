#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "LocalModels/LanguageModelRuntime.h"
#include "LocalModels/QwenServerPool.h"
#include "LocalModels/SageNativeAssets.h"
#include "LocalModels/SageNativeRefinementProvider.h"
#include "LocalModels/SmartModelFiles.h"
#include "Platform/ProcessLauncher.h"
#include "Product/ExecutableRuntimePolicy.h"
#include "Product/MRMBuildIdentity.h"
#include "Refinement/ModelRefiners.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// Where the refiners' code is. The environment's values count in a development build only.
struct RefinerLocations {
  std::filesystem::path resourcesDirectory;
  std::filesystem::path temporaryDirectory;
  DistributionEdition edition = DistributionEdition::development;
  /// Of `LanguageModelRuntime::environmentVariable`.
  std::optional<std::string> languageModelServer;
  /// Of `SageNativeAssets::runtimeEnvironmentVariable`.
  std::optional<std::string> onnxRuntime;
};

/// The refiners that run models on this machine, with the processes behind them. Main thread. Destroying it
/// ends the processes.
class LocalModelRefiners final : public ModelRefiners {
 public:
  /// All of it must outlive the refiners and everything that they make.
  struct Services {
    Executor& executor;
    const Clock& clock;
    ProcessLauncher& launcher;
    const SmartModelFiles& files;
  };

  LocalModelRefiners(Services services, const std::string& applicationIdentifier,
                     const RefinerLocations& locations, const ExecutableRuntimePolicy& policy,
                     QwenServerLimits serverLimits = {}, SageLimits sageLimits = {});

  /// A prewarmed refiner is the one that is used from now on: the servers of other models end.
  [[nodiscard]] std::unique_ptr<RefinementProvider> makeLanguageModelRefiner(SmartLocalModel model,
                                                                             bool prewarmed) override;
  /// Its worker loads its model from now on, if it has not.
  [[nodiscard]] std::shared_ptr<RefinementProvider> russianRefiner() override;

  /// Waits until the model's server has been started, for those who have no time to speak meanwhile. False
  /// when it could not be.
  [[nodiscard]] Task<bool> prepared(SmartLocalModel model) { return pool_.prepared(model); }
  /// The same for the Russian refiner. False when its files are not installed, too.
  [[nodiscard]] Task<bool> russianPrepared();

  /// The line that the settings show; nothing while nobody has asked for the model.
  [[nodiscard]] std::optional<std::string_view> preparationStatus(SmartLocalModel model) const {
    return pool_.preparationStatus(model);
  }
  [[nodiscard]] Signal<>& onPreparationChange() { return pool_.onPreparationChange(); }

  /// Ends every process: smart formatting was switched off. The next refiner starts them again.
  void shutdown();

 private:
  Services services_;
  std::string applicationIdentifier_;
  SageNativeAssets assets_;
  SageWorkerClient::MayExecute mayExecute_;
  SageLimits sageLimits_;
  QwenServerPool pool_;
  std::shared_ptr<RefinementProvider> russian_;
  SageNativeRefinementProvider* sage_ = nullptr;  ///< inside `russian_`
};

}  // namespace murmel
