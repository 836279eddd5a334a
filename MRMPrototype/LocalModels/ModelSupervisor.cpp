#include "LocalModels/ModelSupervisor.h"

#include "Foundation/Crypto/Wipe.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <utility>

namespace murmel {

/// One start and what became of it.
struct ModelSupervisor::Run {
  WorkerCancellation cancellation;
  std::mutex asking;                      ///< held while the process is asked, and while it goes
  std::unique_ptr<ModelProcess> process;  ///< guarded by `asking`; there as long as it is ready
  int timeouts = 0;                       ///< in a row; guarded by `asking`
  std::atomic<bool> hasAnswered = false;
  bool wasReady = false;       ///< guarded by the lock of the supervisor, as is what follows
  std::string givenUpBecause;  ///< empty unless it was
};

namespace {

/// A process that takes so many deadlines in a row hangs.
constexpr int mostTimeouts = 2;

/// After so many processes in a row that have not answered anything none is started by itself.
constexpr int mostReplacements = 2;

/// Nothing when this process has no descriptor left: no reason to lose a dictation, only its formatting.
template <class T>
std::shared_ptr<T> makeOrNothing() {
  try {
    return std::make_shared<T>();
  } catch (const std::system_error&) {
    return nullptr;
  }
}

}  // namespace

/// Lives in the frame of a waiting caller; when the caller goes, the question is not worth its time any more.
class ModelSupervisor::Patience {
 public:
  explicit Patience(std::shared_ptr<WorkerCancellation> cancellation)
      : cancellation_(std::move(cancellation)) {}
  Patience(const Patience&) = delete;
  Patience& operator=(const Patience&) = delete;
  ~Patience() { cancellation_->cancel(); }
  [[nodiscard]] std::shared_ptr<const WorkerCancellation> cancellation() const { return cancellation_; }

 private:
  std::shared_ptr<WorkerCancellation> cancellation_;
};

ModelSupervisor::ModelSupervisor(Services services, const std::string& label, Source source, Limits limits,
                                 Events events)
    : services_(services),
      source_(std::move(source)),
      limits_(limits),
      events_(std::move(events)),
      queue_(services.executor, label),
      startupQueue_(services.executor, label + "-start") {}

ModelSupervisor::~ModelSupervisor() {
  shutdown();
}

void ModelSupervisor::startIfNeeded() {
  const auto now = preparation();
  if (now == Preparation::ready || now == Preparation::preparing) return;
  {
    const std::lock_guard guard(lock_);
    if (services_.clock.now() < notBefore_) return;
  }
  replacement_.reset();
  auto make = source_();
  auto run = make ? makeOrNothing<Run>() : nullptr;
  {
    const std::lock_guard guard(lock_);
    run_ = run;
    starting_ = run != nullptr;
    failed_ = !starting_;
    diagnostic_ = "starting";
    if (!run) diagnostic_ = make ? "too many open files" : make.error();
  }
  tellChange();
  if (!run) return;
  // A plain pointer: the job runs only while the queue, and so the supervisor, is there.
  startupQueue_.enqueue([this, run, make = *std::move(make)] { serve(run, make); });
}

/// The whole life of a process, on the thread that it depends on.
void ModelSupervisor::serve(const std::shared_ptr<Run>& run, const Make& make) {
  auto process = make(run->cancellation);
  auto* const served = process.get();
  auto started = process->start();
  if (!started) {
    process.reset();
    end(*run, std::move(started.error()));
    return;
  }
  {
    const std::lock_guard asking(run->asking);
    run->process = std::move(process);
  }
  if (becomeReady(*run)) served->awaitEnd();
  // Whoever asks is woken; whoever comes later finds nobody to ask.
  run->cancellation.cancel();
  {
    const std::lock_guard asking(run->asking);
    process = std::move(run->process);
  }
  process.reset();
  end(*run, "model process exited");
}

bool ModelSupervisor::becomeReady(const Run& run) {
  {
    const std::lock_guard guard(lock_);
    if (run_.get() != &run) return false;  // shut down meanwhile
    run_->wasReady = true;
    ready_ = true;
    starting_ = false;
    diagnostic_ = "process running on private local socket";
  }
  tellChange();
  return true;
}

/// Ends a process that runs, but does not answer as it should.
void ModelSupervisor::giveUp(Run& run, std::string reason) {
  {
    const std::lock_guard guard(lock_);
    if (run_.get() != &run) return;
    ready_ = false;
    starting_ = true;  // Another one, as soon as this one is gone.
    run.givenUpBecause = std::move(reason);
  }
  run.cancellation.cancel();
}

void ModelSupervisor::end(const Run& run, std::string reason) {
  {
    const std::lock_guard guard(lock_);
    if (run_.get() != &run) return;
    const auto ended = std::exchange(run_, nullptr);
    ready_ = starting_ = false;
    failed_ = true;
    diagnostic_ = ended->givenUpBecause.empty() ? std::move(reason) : ended->givenUpBecause;
    reason = diagnostic_;
    failures_ = ended->hasAnswered ? 0 : failures_ + 1;
    auto pause = failures_ == 0 ? Duration::zero() : limits_.firstPause;
    for (int failure = 1; failure < failures_ && pause < limits_.longestPause; ++failure) pause *= 2;
    pause = std::min(pause, limits_.longestPause);
    notBefore_ = services_.clock.now() + pause;
    if (ended->wasReady && failures_ <= mostReplacements) {
      services_.executor.post([weak = weak_from_this(), pause] {
        if (const auto supervisor = weak.lock()) supervisor->replace(pause);
      });
    }
  }
  tellChange(std::move(reason));
}

void ModelSupervisor::replace(Duration pause) {
  // Shut down, or started again, meanwhile.
  if (preparation() != Preparation::failed) return;
  if (pause == Duration::zero()) {
    startIfNeeded();
  } else {
    replacement_ = services_.executor.after(pause, [this] { startIfNeeded(); });
  }
}

void ModelSupervisor::shutdown() {
  replacement_.reset();
  {
    const std::lock_guard guard(lock_);
    if (run_) run_->cancellation.cancel();
    run_.reset();
    ready_ = starting_ = failed_ = false;
    failures_ = 0;
    notBefore_ = {};
    diagnostic_ = "idle";
  }
  tellChange();
}

Task<std::optional<SpokenText>> ModelSupervisor::ask(SpokenText question, Reading reading) {
  return askOn(shared_from_this(), std::move(question), reading);
}

Task<std::optional<SpokenText>> ModelSupervisor::askOn(std::shared_ptr<ModelSupervisor> supervisor,
                                                       SpokenText question, Reading reading) {
  if (supervisor->preparation() != Preparation::ready) co_return std::nullopt;
  auto cancellation = makeOrNothing<WorkerCancellation>();
  if (!cancellation) co_return std::nullopt;
  const Patience patience(std::move(cancellation));
  const auto deadline = supervisor->services_.clock.now() + supervisor->limits_.request;
  auto work = [self = supervisor.get(), given = patience.cancellation(), deadline, reading,
               question = std::move(question)] {
    return self->exchange(question, deadline, *given, reading);
  };
  auto asked = supervisor->queue_.run(std::move(work));
  auto answer = co_await asked;
  co_return answer;
}

std::optional<SpokenText> ModelSupervisor::exchange(const SpokenText& question, Instant deadline,
                                                    const WorkerCancellation& patience, Reading reading) {
  std::shared_ptr<Run> run;
  {
    const std::lock_guard guard(lock_);
    if (!ready_) return std::nullopt;
    run = run_;
  }
  std::expected<std::string, ModelProcess::Failure> answer;
  {
    const std::lock_guard asking(run->asking);
    if (patience.isCancelled() || run->cancellation.isCancelled() || !run->process) return std::nullopt;
    // A question that has waited for another one most of its time says nothing about the process.
    const bool hasItsTime = deadline - services_.clock.now() > limits_.request / 2;
    answer = run->process->ask(question.reveal(), deadline, patience);
    if (answer) {
      run->timeouts = 0;
      run->hasAnswered = true;
    } else if (answer.error() == ModelProcess::Failure::timedOut) {
      if (hasItsTime && ++run->timeouts == mostTimeouts) giveUp(*run, "two answers in a row took too long");
    } else if (answer.error() == ModelProcess::Failure::lost && !run->cancellation.isCancelled()) {
      giveUp(*run, "an answer was not understood");
    }
  }
  if (!answer) return std::nullopt;
  auto read = reading(question.reveal(), *answer);
  wipe(*answer);
  return read ? std::optional<SpokenText>(*std::move(read)) : std::nullopt;
}

ModelSupervisor::Preparation ModelSupervisor::preparation() const {
  const std::lock_guard guard(lock_);
  if (ready_) return Preparation::ready;
  if (starting_) return Preparation::preparing;
  return failed_ ? Preparation::failed : Preparation::none;
}

std::string ModelSupervisor::diagnostic() const {
  const std::lock_guard guard(lock_);
  return diagnostic_;
}

/// Any thread.
void ModelSupervisor::tellChange(std::optional<std::string> failure) {
  services_.executor.post([weak = weak_from_this(), failure = std::move(failure)] {
    const auto supervisor = weak.lock();
    if (!supervisor) return;
    if (failure && supervisor->events_.failed) supervisor->events_.failed(*failure);
    if (supervisor->events_.preparationChanged) supervisor->events_.preparationChanged();
  });
}

}  // namespace murmel
