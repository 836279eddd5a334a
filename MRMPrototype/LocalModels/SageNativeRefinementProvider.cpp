#include "LocalModels/SageNativeRefinementProvider.h"

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Async/SerialQueue.h"
#include "Refinement/ConservativeFormattingProjection.h"

#include <atomic>
#include <utility>

namespace murmel {

namespace {

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

std::unexpected<MRMError> refinementFailed() {
  return std::unexpected(MRMError(MRMError::Case::smartRefinementFailed));
}

}  // namespace

/// What the queue's thread works on; every waiting request holds it too. The queue is the last member: it is
/// stopped before the rest is destroyed.
struct SageNativeRefinementProvider::State {
  State(const Services& given, const std::string& applicationIdentifier,
        SageWorkerClient::MayExecute mayExecute, SageLimits givenLimits)
      : limits(givenLimits),
        executor(given.executor),
        clock(given.clock),
        client(std::move(mayExecute), limits, given.launcher, given.clock, cancellation),
        queue(given.executor, applicationIdentifier + ".sage") {}

  const std::string providerID{identifier};
  const SageLimits limits;
  Executor& executor;
  const Clock& clock;
  WorkerCancellation cancellation;
  /// Loads behind each other would keep a request waiting that has no worker to wait for.
  std::atomic<bool> isLoading = false;
  std::atomic<bool> isLoaded = false;
  SageWorkerClient client;  ///< on the queue only
  SerialQueue queue;
};

SageNativeRefinementProvider::SageNativeRefinementProvider(Services services,
                                                           const std::string& applicationIdentifier,
                                                           const SageNativeAssets& assets,
                                                           SageWorkerClient::MayExecute mayExecute,
                                                           SageLimits limits)
    : assets_(assets),
      state_(std::make_shared<State>(services, applicationIdentifier, std::move(mayExecute), limits)) {}

SageNativeRefinementProvider::~SageNativeRefinementProvider() {
  state_->cancellation.cancel();
}

void SageNativeRefinementProvider::startIfNeeded() {
  auto paths = assets_.paths();
  if (!paths || state_->isLoading.exchange(true)) return;
  // A plain pointer: the job runs only while the queue, and so the state, is there.
  state_->queue.enqueue([state = state_.get(), paths = *std::move(paths)] {
    state->isLoaded = state->client.load(paths).has_value();
    state->isLoading = false;
  });
}

Task<bool> SageNativeRefinementProvider::prepared() {
  auto paths = assets_.paths();
  if (!paths) co_return false;
  auto loading = load(state_, *std::move(paths));
  const bool isReady = co_await loading;
  co_return isReady;
}

Task<bool> SageNativeRefinementProvider::load(std::shared_ptr<State> state, SageNativeAssets::Paths paths) {
  auto work = [worker = state.get(), paths = std::move(paths)] {
    worker->isLoaded = worker->client.load(paths).has_value();
    return worker->isLoaded.load();
  };
  auto loading = state->queue.run(std::move(work));
  const bool isReady = co_await loading;
  co_return isReady;
}

const std::string& SageNativeRefinementProvider::providerID() const {
  return state_->providerID;
}

Task<Result<std::string>> SageNativeRefinementProvider::refine(std::string text) {
  if (!assets_.isReady()) co_return std::unexpected(MRMError(MRMError::Case::smartModelMissing));
  // A worker that has ended, or was never asked for, is there for the next dictation; this one does not wait
  // for it.
  const bool isLoaded = state_->isLoaded;
  if (!isLoaded) startIfNeeded();
  if (!isLoaded) co_return refinementFailed();
  auto refining = refineOn(state_, std::move(text));
  auto result = co_await refining;
  co_return result;
}

Task<Result<std::string>> SageNativeRefinementProvider::refineOn(std::shared_ptr<State> state,
                                                                 std::string text) {
  auto [sender, receiver] = makeOneShot<Result<std::string>>();
  const auto first = std::make_shared<OneShotSender<Result<std::string>>>(std::move(sender));
  // The queue may be busy with a worker that loads its model: its answer is not what ends the wait then.
  const auto timer =
      state->executor.after(state->limits.request, [first] { first->send(refinementFailed()); });
  Scope scope;
  scope.start(ask(state, text, first));
  const auto answer = co_await receiver;
  auto formatted =
      answer && *answer ? ConservativeFormattingProjection::project(text, **answer) : std::nullopt;
  if (!formatted) co_return refinementFailed();
  co_return *std::move(formatted);
}

Task<void> SageNativeRefinementProvider::ask(std::shared_ptr<State> state, std::string text,
                                             std::shared_ptr<OneShotSender<Result<std::string>>> first) {
  const Interest interest;
  const auto deadline = state->clock.now() + state->limits.request;
  auto work = [worker = state.get(), wanted = interest.flag(), text = std::move(text),
               deadline]() -> Result<std::string> {
    // Given up before its turn: the worker's time is for those who wait.
    if (!*wanted) return refinementFailed();
    auto corrected = worker->client.correct(text, deadline);
    worker->isLoaded = worker->client.isLoaded();
    return corrected;
  };
  auto asked = state->queue.run(std::move(work));
  auto answer = co_await asked;
  // Later, because the waiter ends this task.
  state->executor.post([first, answer = std::move(answer)]() mutable { first->send(std::move(answer)); });
}

}  // namespace murmel
