#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "LocalModels/SageNativeAssets.h"
#include "LocalModels/SageWorkerClient.h"
#include "Platform/ProcessLauncher.h"
#include "Refinement/RefinementProvider.h"

#include <memory>
#include <string>
#include <string_view>

namespace murmel {

/// The native Russian refiner: a worker process that is kept between dictations, and a thread of its own on
/// which everything that waits for it happens. What the worker says is only ever looked at for punctuation
/// and capitals. Main thread. Errors: `smartModelMissing` without its files, `smartRefinementFailed` for
/// everything else, a worker that still loads included.
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
                               SageLimits limits = {});
  ~SageNativeRefinementProvider() override;

  /// Starts the worker and lets it load its model; nothing happens when it has, or when files are missing.
  void startIfNeeded();
  /// The same, waiting for it. False when the worker could not be started.
  [[nodiscard]] Task<bool> prepared();

  [[nodiscard]] const std::string& providerID() const override;
  Task<Result<std::string>> refine(std::string text) override;

 private:
  struct State;
  static Task<Result<std::string>> refineOn(std::shared_ptr<State> state, std::string text);
  static Task<bool> load(std::shared_ptr<State> state, SageNativeAssets::Paths paths);
  static Task<void> ask(std::shared_ptr<State> state, std::string text,
                        std::shared_ptr<OneShotSender<Result<std::string>>> first);

  const SageNativeAssets& assets_;
  std::shared_ptr<State> state_;
};

}  // namespace murmel
