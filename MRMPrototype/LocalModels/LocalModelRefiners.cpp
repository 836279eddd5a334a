#include "LocalModels/LocalModelRefiners.h"

#include "LocalModels/QwenLocalRefinementProvider.h"
#include "Refinement/BoundedRefinementProvider.h"

#include <utility>

namespace murmel {

namespace {

/// Whether a development build was pointed to a runtime library elsewhere.
bool isElsewhere(const RefinerLocations& locations) {
  return locations.edition == DistributionEdition::development && locations.onnxRuntime &&
         locations.onnxRuntime->starts_with('/');
}

std::filesystem::path onnxRuntime(const RefinerLocations& locations) {
  if (isElsewhere(locations)) return *locations.onnxRuntime;
  return locations.resourcesDirectory / SageNativeAssets::runtimePath;
}

SageWorkerClient::MayExecute sagePolicy(const RefinerLocations& locations, ExecutableRuntimePolicy policy) {
  auto elsewhere = isElsewhere(locations) ? onnxRuntime(locations) : std::filesystem::path();
  return [policy = std::move(policy), elsewhere = std::move(elsewhere)](const std::filesystem::path& file) {
    return policy.mayExecute(file) || (!elsewhere.empty() && file == elsewhere);
  };
}

}  // namespace

LocalModelRefiners::LocalModelRefiners(Services services, const std::string& applicationIdentifier,
                                       const RefinerLocations& locations,
                                       const ExecutableRuntimePolicy& policy, QwenServerLimits serverLimits,
                                       SageLimits sageLimits)
    : services_(services),
      applicationIdentifier_(applicationIdentifier),
      assets_(locations.resourcesDirectory, onnxRuntime(locations), services.files),
      mayExecute_(sagePolicy(locations, policy)),
      sageLimits_(sageLimits),
      pool_({services.executor, services.clock, services.launcher}, services.files,
            {.applicationIdentifier = applicationIdentifier,
             .temporaryDirectory = locations.temporaryDirectory,
             .runtime = LanguageModelRuntime::locate(locations.resourcesDirectory, locations.edition, policy,
                                                     locations.languageModelServer),
             .limits = serverLimits}) {}

std::unique_ptr<RefinementProvider> LocalModelRefiners::makeLanguageModelRefiner(SmartLocalModel model,
                                                                                 bool prewarmed) {
  if (prewarmed) pool_.shutdownAllBut(model);
  return std::make_unique<QwenLocalRefinementProvider>(pool_.server(model), prewarmed);
}

std::shared_ptr<RefinementProvider> LocalModelRefiners::russianRefiner() {
  if (!assets_.isReady()) return nullptr;
  if (!russian_) {
    auto sage = std::make_unique<SageNativeRefinementProvider>(
        SageNativeRefinementProvider::Services{services_.executor, services_.clock, services_.launcher},
        applicationIdentifier_, assets_, mayExecute_, sageLimits_);
    sage_ = sage.get();
    // In pieces: the decoder's work grows with the square of the length.
    russian_ = std::make_shared<BoundedRefinementProvider>(std::move(sage));
  }
  sage_->startIfNeeded();
  return russian_;
}

Task<bool> LocalModelRefiners::russianPrepared() {
  const auto refiner = russianRefiner();
  if (!refiner) co_return false;
  auto preparing = sage_->prepared();
  const bool isReady = co_await preparing;
  co_return isReady;
}

void LocalModelRefiners::shutdown() {
  pool_.shutdownAll();
  sage_ = nullptr;
  russian_.reset();
}

}  // namespace murmel
