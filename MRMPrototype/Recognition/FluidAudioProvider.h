#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Models/SpeechModelStore.h"
#include "Platform/ProcessLauncher.h"
#include "Product/ExecutableRuntimePolicy.h"
#include "Recognition/SpeechWorkerClient.h"
#include "Recognition/TranscriptionProvider.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// The application's speech recogniser: a worker process that is kept between dictations and let go when
/// there has been none for a while, and a thread of its own on which everything that waits for it happens.
/// Main thread.
///
/// Destroying it ends the worker at once; requests that still wait are answered with "worker exited
/// unexpectedly".
class FluidAudioProvider final : public TranscriptionProvider {
 public:
  static constexpr std::string_view identifier = "parakeet-tdt-0.6b-v3-fluid-audio";
  /// The executable in the folder "Workers" of the resources.
  static constexpr std::string_view workerName = "mrm-fluidaudio-worker";

  /// Called once, on the main thread: whether the worker became ready.
  using WarmupCompletion = std::function<void(bool ready)>;

  /// What the provider uses of the application. All of it must outlive the provider.
  struct Services {
    Executor& executor;
    const Clock& clock;
    ProcessLauncher& launcher;
    /// How long the worker is kept without a request; zero is for ever. Ten minutes where there is none.
    std::function<Duration()> idleLimit = nullptr;
  };

  /// Where the application's own files are, and what it is called.
  struct Bundle {
    std::filesystem::path resourcesDirectory;
    std::string applicationIdentifier;
    /// Names that may be said; asked at each request to an engine that takes them.
    std::function<std::vector<std::string>()> vocabulary = nullptr;
  };

  /// Stores its arguments; nothing is started.
  FluidAudioProvider(Services services, const std::string& applicationIdentifier,
                     SpeechWorkerConfiguration configuration);
  ~FluidAudioProvider() override;

  /// The application's own recogniser, with its warm-up under way: `modelMissing` with the folder unless the
  /// store finds the required items, `workerMissing` unless the worker is in the resources. The store must
  /// outlive the provider.
  static Result<std::unique_ptr<FluidAudioProvider>> create(Services services, const Bundle& bundle,
                                                            const SpeechModelStore& store,
                                                            ExecutableRuntimePolicy policy,
                                                            WarmupCompletion warmupCompletion = nullptr,
                                                            WorkerLimits limits = {});
  /// The same with a model that is not the active one, and without a warm-up.
  static Result<std::unique_ptr<FluidAudioProvider>> createFor(std::filesystem::path model, Services services,
                                                               const Bundle& bundle,
                                                               const SpeechModelStore& store,
                                                               ExecutableRuntimePolicy policy,
                                                               WorkerLimits limits = {});
  /// Whether the worker may be started, and the library of engines beside it may be loaded.
  static bool mayStart(const ExecutableRuntimePolicy& policy, const std::filesystem::path& worker);

  /// Starts the worker and lets it load its model. `completion` gets false on any error, and when the
  /// provider goes before it has begun.
  void startWarmup(WarmupCompletion completion = nullptr);

  [[nodiscard]] const std::string& providerID() const override;
  Task<Result<void>> prepare() override;
  Task<Result<TranscriptionResult>> transcribe(CapturedAudio audio,
                                               std::optional<std::string> language) override;

 private:
  struct State;
  static Task<Result<void>> prepareOn(std::shared_ptr<State> state);
  static Task<Result<TranscriptionResult>> transcribeOn(std::shared_ptr<State> state, CapturedAudio audio,
                                                        std::optional<std::string> language,
                                                        std::vector<std::string> vocabulary);

  std::shared_ptr<State> state_;
  std::function<std::vector<std::string>()> vocabulary_;
};

}  // namespace murmel
