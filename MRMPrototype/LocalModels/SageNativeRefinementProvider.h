#pragma once

#include "LocalModels/ModelSupervisor.h"
#include "LocalModels/SageNativeAssets.h"
#include "LocalModels/SageWorkerClient.h"
#include "Platform/ProcessLauncher.h"
#include "Refinement/RefinementProvider.h"

#include <memory>
#include <string>
#include <string_view>

namespace murmel {

/// The native Russian refiner, on a worker process that is kept between dictations. What the worker says is
/// only ever looked at for punctuation and capitals. Main thread. Errors: `smartModelMissing` without its
/// files, `smartRefinementFailed` for everything else, a worker that still loads included.
///
/// Destroying it ends the worker at once; requests that still wait fail.
class SageNativeRefinementProvider final : public RefinementProvider {
 public:
  static constexpr std::string_view identifier = "sage-95m-native";

  /// All of it must outlive the provider.
  struct Services {
    Executor& executor;
    const Clock& clock;
    ProcessLauncher& launcher;
  };

  SageNativeRefinementProvider(Services services, const std::string& applicationIdentifier,
                               const SageNativeAssets& assets, SageWorkerClient::MayExecute mayExecute,
                               SageLimits limits = {}, ModelSupervisor::Events events = {});
  ~SageNativeRefinementProvider() override { supervisor_->shutdown(); }

  /// Starts the worker and lets it load its model; nothing happens when it has, or when files are missing.
  void startIfNeeded() { supervisor_->startIfNeeded(); }
  [[nodiscard]] ModelSupervisor::Preparation preparation() const { return supervisor_->preparation(); }
  [[nodiscard]] std::string diagnostic() const { return supervisor_->diagnostic(); }

  [[nodiscard]] const std::string& providerID() const override { return providerID_; }
  Task<Result<SpokenText>> refine(SpokenText text) override;

 private:
  static Task<Result<SpokenText>> run(std::shared_ptr<ModelSupervisor> supervisor, SpokenText text);

  const std::string providerID_{identifier};
  const SageNativeAssets& assets_;
  std::shared_ptr<ModelSupervisor> supervisor_;
};

}  // namespace murmel
