#include "LocalModels/SageNativeRefinementProvider.h"

#include "Refinement/ConservativeFormattingProjection.h"

#include <utility>

namespace murmel {

SageNativeRefinementProvider::SageNativeRefinementProvider(Services services,
                                                           const std::string& applicationIdentifier,
                                                           const SageNativeAssets& assets,
                                                           SageWorkerClient::MayExecute mayExecute,
                                                           SageLimits limits, ModelSupervisor::Events events)
    : assets_(assets) {
  auto source = [&assets, limits, mayExecute = std::move(mayExecute), &launcher = services.launcher,
                 &clock = services.clock]() -> std::expected<ModelSupervisor::Make, std::string> {
    auto paths = assets.paths();
    if (!paths) return std::unexpected(MRMError(MRMError::Case::smartModelMissing).localizedDescription());
    return [paths = *std::move(paths), mayExecute, limits, &launcher,
            &clock](const WorkerCancellation& cancellation) {
      return std::make_unique<SageWorkerClient>(paths, mayExecute, limits, launcher, clock, cancellation);
    };
  };
  supervisor_ = std::make_shared<ModelSupervisor>(
      ModelSupervisor::Services{services.executor, services.clock}, applicationIdentifier + ".sage",
      std::move(source), limits.asking, std::move(events));
}

Task<Result<SpokenText>> SageNativeRefinementProvider::refine(SpokenText text) {
  if (!assets_.isReady()) co_return std::unexpected(MRMError(MRMError::Case::smartModelMissing));
  // A worker that has ended, or was never asked for, is there for the next dictation.
  supervisor_->startIfNeeded();
  auto running = run(supervisor_, std::move(text));
  auto result = co_await running;
  co_return result;
}

Task<Result<SpokenText>> SageNativeRefinementProvider::run(std::shared_ptr<ModelSupervisor> supervisor,
                                                           SpokenText text) {
  auto asking = supervisor->ask(std::move(text), &ConservativeFormattingProjection::project);
  auto formatted = co_await asking;
  if (!formatted) co_return std::unexpected(MRMError(MRMError::Case::smartRefinementFailed));
  co_return *std::move(formatted);
}

}  // namespace murmel
