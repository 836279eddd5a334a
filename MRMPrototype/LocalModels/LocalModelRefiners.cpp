#include "LocalModels/LocalModelRefiners.h"

#include "Foundation/RawValue.h"
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

}  // namespace

LanguageModelRuntime RefinerLocations::languageModelRuntime(ExecutableRuntimePolicy policy) const {
  return LanguageModelRuntime::locate(resourcesDirectory, edition, std::move(policy), languageModelServer);
}

std::filesystem::path RefinerLocations::onnxRuntimeLibrary() const {
  if (isElsewhere(*this)) return *onnxRuntime;
  return resourcesDirectory / SageNativeAssets::runtimePath;
}

SageWorkerClient::MayExecute RefinerLocations::russianPolicy(ExecutableRuntimePolicy policy) const {
  auto elsewhere = isElsewhere(*this) ? onnxRuntimeLibrary() : std::filesystem::path();
  return [policy = std::move(policy), elsewhere = std::move(elsewhere)](const std::filesystem::path& file) {
    return policy.mayExecute(file) || (!elsewhere.empty() && file == elsewhere);
  };
}

namespace {

/// Reasons come from this program and its workers, and none holds a word of the user's.
std::function<void(const std::string&)> logging(const Logger& log, std::string model) {
  return [log, model = std::move(model)](const std::string& reason) {
    log.event(LogLevel::error, "model_process_failed",
              {{"model", PublicText::declared(model)}, {"reason", PublicText::declared(reason)}});
  };
}

}  // namespace

LocalModelRefiners::LocalModelRefiners(Services services, const std::string& applicationIdentifier,
                                       const RefinerLocations& locations,
                                       const ExecutableRuntimePolicy& policy,
                                       std::function<RefinementChoice()> choice,
                                       QwenServerLimits serverLimits, SageLimits sageLimits)
    : services_(services),
      applicationIdentifier_(applicationIdentifier),
      log_(services.log, applicationIdentifier, "local-models"),
      choice_(std::move(choice)),
      assets_(locations.resourcesDirectory, locations.onnxRuntimeLibrary(), services.files),
      mayExecute_(locations.russianPolicy(policy)),
      sageLimits_(sageLimits),
      pool_({services.executor, services.clock, services.launcher}, services.files,
            {.applicationIdentifier = applicationIdentifier,
             .temporaryDirectory = locations.temporaryDirectory,
             .runtime = locations.languageModelRuntime(policy),
             .limits = serverLimits,
             .failed = [log = log_](SmartLocalModel model, const std::string& reason) {
               logging(log, std::string(rawValue(model)))(reason);
             }}) {}

std::shared_ptr<RefinementProvider> LocalModelRefiners::makeRefinementProvider() {
  const auto choice = choice_();
  const ModelRefiners models{
      .languageModel =
          [&] { return std::make_unique<QwenLocalRefinementProvider>(pool_.server(choice.model), false); },
      .russian = [this] { return russianRefiner(); },
  };
  return murmel::makeRefinementProvider(choice, models, services_.recognizer);
}

std::shared_ptr<RefinementProvider> LocalModelRefiners::russianRefiner() {
  if (!assets_.isReady()) return nullptr;
  if (!russian_) {
    auto sage = std::make_unique<SageNativeRefinementProvider>(
        SageNativeRefinementProvider::Services{services_.executor, services_.clock, services_.launcher},
        applicationIdentifier_, assets_, mayExecute_, sageLimits_,
        ModelSupervisor::Events{
            .preparationChanged = [changed = pool_.onPreparationChange()] { changed->emit(); },
            .failed = logging(log_, std::string(SageNativeRefinementProvider::identifier))});
    sage_ = sage.get();
    // In pieces: the decoder's work grows with the square of the length.
    russian_ = std::make_shared<BoundedRefinementProvider>(std::move(sage));
  }
  return russian_;
}

void LocalModelRefiners::warmUp() {
  const auto choice = choice_();
  if (choice.needsLanguageModel()) {
    pool_.shutdownAllBut(choice.model);
    if (pool_.server(choice.model)->isInstalled()) pool_.activate(choice.model);
  } else {
    pool_.shutdownAll();
  }
  if (choice.needsRussianRefiner() && russianRefiner()) {
    sage_->startIfNeeded();
  } else {
    russian_.reset();
    sage_ = nullptr;
  }
}

Task<bool> LocalModelRefiners::prepared() {
  warmUp();
  using enum ModelSupervisor::Preparation;
  const auto choice = choice_();
  const auto isAny = [&](ModelSupervisor::Preparation wanted) {
    return (choice.needsLanguageModel() && pool_.server(choice.model)->preparation() == wanted) ||
           (sage_ != nullptr && sage_->preparation() == wanted);
  };
  while (isAny(preparing)) {
    auto changing = pool_.nextChange();
    co_await changing;
  }
  co_return isAny(ready);
}

std::string LocalModelRefiners::russianFailure() const {
  const bool hasFailed = sage_ != nullptr && sage_->preparation() == ModelSupervisor::Preparation::failed;
  return hasFailed ? sage_->diagnostic() : std::string();
}

void LocalModelRefiners::shutdown() {
  pool_.shutdownAll();
  sage_ = nullptr;
  russian_.reset();
}

}  // namespace murmel
