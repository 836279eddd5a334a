#include "Recognition/FluidAudioProvider.h"

#include "Foundation/Async/SerialQueue.h"
#include "Models/SpeechModels.h"
#include "WorkerProcess/IdleMemory.h"
#include "WorkerProcess/KeepAlive.h"
#include "WorkerProcess/WorkerCancellation.h"

#include <atomic>
#include <system_error>
#include <utility>

namespace murmel {

namespace {

/// Answers once and for certain: a completion that is dropped with its queue has failed.
class PendingCompletion {
 public:
  PendingCompletion(Executor& executor, FluidAudioProvider::WarmupCompletion completion)
      : executor_(&executor), completion_(std::move(completion)) {}
  PendingCompletion(PendingCompletion&& other) noexcept
      : executor_(other.executor_), completion_(std::exchange(other.completion_, nullptr)) {}
  PendingCompletion& operator=(PendingCompletion&&) = delete;
  ~PendingCompletion() { finish(false); }

  void finish(bool ready) {
    if (auto completion = std::exchange(completion_, nullptr))
      executor_->post([completion = std::move(completion), ready] { completion(ready); });
  }

 private:
  Executor* executor_;
  FluidAudioProvider::WarmupCompletion completion_;
};

/// Lives in the frame of a waiting caller; tells its job when the caller has gone.
class Interest {
 public:
  Interest() = default;
  Interest(const Interest&) = delete;
  Interest& operator=(const Interest&) = delete;
  ~Interest() { *flag_ = false; }
  [[nodiscard]] std::shared_ptr<const std::atomic<bool>> flag() const { return flag_; }

 private:
  std::shared_ptr<std::atomic<bool>> flag_ = std::make_shared<std::atomic<bool>>(true);
};

/// The engine that the worker will choose for that model, by the name under which stored entries know it.
std::string providerIdentifier(const std::filesystem::path& model) {
  const auto* const engine = engineOf(model);
  const bool isParakeet = engine == nullptr || engine == &speechEngine("parakeet");
  return std::string(isParakeet ? FluidAudioProvider::identifier : engine->identifier);
}

}  // namespace

/// What the queue's thread works on. The provider and every waiting request hold it, so that a request is
/// answered even when the provider goes first. The queue is the last member: it is stopped before the rest is
/// destroyed.
struct FluidAudioProvider::State {
  State(Services services, const std::string& applicationIdentifier, SpeechWorkerConfiguration configuration)
      : providerID(providerIdentifier(configuration.modelURL)),
        executor(services.executor),
        client(std::move(configuration), providerID, services.launcher, services.clock, cancellation),
        keepAlive(services.executor, std::move(services.idleLimit), [this] { letGo(); }),
        queue(services.executor, applicationIdentifier + ".fluidaudio") {}

  const std::string providerID;
  Executor& executor;
  WorkerCancellation cancellation;
  SpeechWorkerClient client;  ///< on the queue only
  KeepAlive keepAlive;
  SerialQueue queue;

 private:
  void letGo() {
    queue.enqueue([this] { client.unload(); });
    // What the dictations before needed in this process goes with it.
    giveBackIdleMemory();
  }
};

FluidAudioProvider::FluidAudioProvider(Services services, const std::string& applicationIdentifier,
                                       SpeechWorkerConfiguration configuration)
    : state_(std::make_shared<State>(services, applicationIdentifier, std::move(configuration))) {}

FluidAudioProvider::~FluidAudioProvider() {
  state_->cancellation.cancel();
}

Result<std::unique_ptr<FluidAudioProvider>> FluidAudioProvider::create(
    Services services, const Bundle& bundle, const SpeechModelStore& store, ExecutableRuntimePolicy policy,
    WarmupCompletion warmupCompletion, WorkerLimits limits) {
  auto provider =
      createFor(store.activeModelURL(), std::move(services), bundle, store, std::move(policy), limits);
  if (provider) (*provider)->startWarmup(std::move(warmupCompletion));
  return provider;
}

Result<std::unique_ptr<FluidAudioProvider>> FluidAudioProvider::createFor(
    std::filesystem::path model, Services services, const Bundle& bundle, const SpeechModelStore& store,
    ExecutableRuntimePolicy policy, WorkerLimits limits) {
  if (!store.requiredItemsPresent(model)) return std::unexpected(MRMError::modelMissing(model.string()));
  auto worker = bundle.resourcesDirectory / "Workers" / workerName;
  std::error_code failure;
  if (!std::filesystem::is_regular_file(worker, failure))
    return std::unexpected(MRMError(MRMError::Case::workerMissing));
  const auto* const engine = engineOf(model);
  SpeechWorkerConfiguration configuration{
      .workerURL = std::move(worker),
      .modelURL = std::move(model),
      .modelIntegrityCheck =
          [&store](const std::filesystem::path& folder) { return store.verifyArtifacts(folder); },
      .mayExecute = [policy = std::move(policy)](
                        const std::filesystem::path& executable) { return mayStart(policy, executable); },
      .runningProcessIntegrityCheck =
          [](const ChildProcess& process, const std::filesystem::path&) {
            return process.runningIdentity() == process.launchedIdentity();
          },
      .limits = limits,
  };
  auto provider = std::make_unique<FluidAudioProvider>(std::move(services), bundle.applicationIdentifier,
                                                       std::move(configuration));
  if (engine != nullptr && engine->takesHints) provider->vocabulary_ = bundle.vocabulary;
  return provider;
}

bool FluidAudioProvider::mayStart(const ExecutableRuntimePolicy& policy,
                                  const std::filesystem::path& worker) {
  const int level = engineModuleLevel(worker.parent_path());
  return policy.mayExecute(worker) &&
         (level == 0 || policy.mayExecute(engineModule(worker.parent_path(), level)));
}

void FluidAudioProvider::startWarmup(WarmupCompletion completion) {
  state_->keepAlive.use().reset();  // the time counts from now
  auto job = [state = state_.get(),
              pending = PendingCompletion(state_->executor, std::move(completion))]() mutable {
    pending.finish(state->client.load().has_value());
  };
  state_->queue.enqueue(std::move(job));
}

const std::string& FluidAudioProvider::providerID() const {
  return state_->providerID;
}

Task<Result<void>> FluidAudioProvider::prepare() {
  return prepareOn(state_);
}

Task<Result<void>> FluidAudioProvider::prepareOn(std::shared_ptr<State> state) {
  const auto use = state->keepAlive.use();
  auto work = [worker = state.get()]() -> Result<void> { return worker->client.load(); };
  auto asked = state->queue.run(std::move(work));
  auto result = co_await asked;
  co_return result;
}

Task<Result<TranscriptionResult>> FluidAudioProvider::transcribe(CapturedAudio audio,
                                                                 std::optional<std::string> language) {
  return transcribeOn(state_, std::move(audio), std::move(language),
                      vocabulary_ ? vocabulary_() : std::vector<std::string>());
}

Task<Result<TranscriptionResult>> FluidAudioProvider::transcribeOn(std::shared_ptr<State> state,
                                                                   CapturedAudio audio,
                                                                   std::optional<std::string> language,
                                                                   std::vector<std::string> vocabulary) {
  const Interest interest;
  const auto use = state->keepAlive.use();
  // The job holds a plain pointer: it runs only while the queue, and so the state, is there, and a shared one
  // could make the queue's thread destroy, and join, itself.
  auto work = [worker = state.get(), wanted = interest.flag(), audio = std::move(audio),
               language = std::move(language),
               vocabulary = std::move(vocabulary)]() -> Result<TranscriptionResult> {
    // Given up before its turn: the worker's time is for those who wait.
    if (!*wanted) return workerFailed("worker exited unexpectedly");
    return worker->client.transcribe(audio, language, vocabulary);
  };
  auto asked = state->queue.run(std::move(work));
  auto result = co_await asked;
  co_return result;
}

}  // namespace murmel
