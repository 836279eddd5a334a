#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Log.h"
#include "LocalModels/LanguageModelRuntime.h"
#include "LocalModels/QwenServerPool.h"
#include "LocalModels/SageNativeAssets.h"
#include "LocalModels/SageNativeRefinementProvider.h"
#include "LocalModels/SmartModelFiles.h"
#include "Platform/ProcessLauncher.h"
#include "Product/ExecutableRuntimePolicy.h"
#include "Product/MRMBuildIdentity.h"
#include "Refinement/RefinementSource.h"

#include <filesystem>
#include <functional>
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

  [[nodiscard]] LanguageModelRuntime languageModelRuntime(ExecutableRuntimePolicy policy) const;
  /// The library that the Russian corrector loads.
  [[nodiscard]] std::filesystem::path onnxRuntimeLibrary() const;
  /// Which files the Russian corrector may consist of.
  [[nodiscard]] SageWorkerClient::MayExecute russianPolicy(ExecutableRuntimePolicy policy) const;
};

/// The refiners that run models on this machine, with the processes behind them. Main thread. Destroying it
/// ends the processes.
class LocalModelRefiners final : public RefinementSource {
 public:
  /// All of it must outlive the refiners and everything that they make.
  struct Services {
    Executor& executor;
    const Clock& clock;
    ProcessLauncher& launcher;
    LogSink& log;
    const SmartModelFiles& files;
    const LanguageRecognizer& recognizer;
  };

  /// `choice` is asked for each dictation.
  LocalModelRefiners(Services services, const std::string& applicationIdentifier,
                     const RefinerLocations& locations, const ExecutableRuntimePolicy& policy,
                     std::function<RefinementChoice()> choice, QwenServerLimits serverLimits = {},
                     SageLimits sageLimits = {});

  std::shared_ptr<RefinementProvider> makeRefinementProvider() override;
  /// Starts nothing whose files are not installed and verified: to be called again when they are.
  void warmUp() override;
  /// Warms up and waits until it is done, for those who have no time to speak meanwhile. False when nothing
  /// could be started.
  [[nodiscard]] Task<bool> prepared();

  /// The line that the settings show; nothing while nobody has asked for the model.
  [[nodiscard]] std::optional<std::string_view> preparationStatus(SmartLocalModel model) const {
    return pool_.preparationStatus(model);
  }
  /// Why the model, or the Russian corrector, is not there; empty when it is, or when nobody has asked for
  /// it.
  [[nodiscard]] std::string failure(SmartLocalModel model) const { return pool_.failure(model); }
  [[nodiscard]] std::string russianFailure() const;
  [[nodiscard]] Signal<>& onPreparationChange() { return *pool_.onPreparationChange(); }

  /// Ends every process: smart formatting was switched off. The next refiner starts them again.
  void shutdown();

 private:
  [[nodiscard]] std::shared_ptr<RefinementProvider> russianRefiner();

  Services services_;
  std::string applicationIdentifier_;
  Logger log_;
  std::function<RefinementChoice()> choice_;
  SageNativeAssets assets_;
  SageWorkerClient::MayExecute mayExecute_;
  SageLimits sageLimits_;
  QwenServerPool pool_;
  std::shared_ptr<RefinementProvider> russian_;
  SageNativeRefinementProvider* sage_ = nullptr;  ///< inside `russian_`
};

}  // namespace murmel
