#include "LocalModels/QwenPersistentServer.h"

#include "Foundation/RawValue.h"
#include "LocalModels/LocalUnixHTTP.h"
#include "LocalModels/QwenChat.h"

#include <array>
#include <system_error>
#include <utility>

namespace murmel {

/// One start and what became of it.
struct QwenPersistentServer::Run {
  WorkerCancellation cancellation;
  std::shared_ptr<const QwenServerSession> session;  ///< set once, when it is ready; guarded by the lock
};

namespace {

/// Nothing when the process has no descriptor left: no reason to lose a dictation, only its formatting.
template <class T>
std::shared_ptr<T> makeOrNothing() {
  try {
    return std::make_shared<T>();
  } catch (const std::system_error&) {
    return nullptr;
  }
}

}  // namespace

/// Lives in the frame of a waiting caller; when the caller goes, the request is not worth its time any more.
class QwenPersistentServer::Patience {
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

QwenPersistentServer::QwenPersistentServer(Services services, const std::string& applicationIdentifier,
                                           SmartLocalModel model, ConfigurationSource configuration,
                                           QwenServerLimits limits, std::function<void()> onChange)
    : providerID_(rawValue(model)),
      model_(model),
      services_(services),
      configuration_(std::move(configuration)),
      limits_(limits),
      onChange_(std::move(onChange)),
      queue_(services.executor, applicationIdentifier + ".qwen-server." + providerID_),
      startupQueue_(services.executor, applicationIdentifier + ".qwen-start." + providerID_) {}

QwenPersistentServer::~QwenPersistentServer() {
  shutdown();
}

void QwenPersistentServer::startIfNeeded() {
  const auto now = preparation();
  if (now == Preparation::ready || now == Preparation::preparing) return;
  auto configuration = configuration_();
  auto run = configuration ? makeOrNothing<Run>() : nullptr;
  {
    const std::lock_guard guard(lock_);
    run_ = run;
    starting_ = run != nullptr;
    failed_ = !starting_;
    diagnostic_ = "starting";
    if (!run) diagnostic_ = configuration ? "too many open files" : configuration.error();
  }
  tellChange();
  if (!run) return;
  configuration->limits = limits_;
  // A plain pointer: the job runs only while the queue, and so the server, is there.
  startupQueue_.enqueue(
      [this, run, configuration = *std::move(configuration)] { serve(run, configuration); });
}

/// The whole life of a process, on the thread that it depends on.
void QwenPersistentServer::serve(const std::shared_ptr<Run>& run,
                                 const QwenServerConfiguration& configuration) {
  QwenServerRun server(configuration, services_.launcher, services_.clock, run->cancellation);
  auto session = server.start();
  if (!session) {
    end(*run, std::move(session.error()));
    return;
  }
  becomeReady(*run, *std::move(session));
  server.awaitEnd();
  end(*run, "inference server exited");
}

void QwenPersistentServer::becomeReady(const Run& run, std::shared_ptr<const QwenServerSession> session) {
  {
    const std::lock_guard guard(lock_);
    if (run_.get() != &run) return;  // shut down meanwhile
    run_->session = std::move(session);
    ready_ = true;
    starting_ = false;
    diagnostic_ = "process running on private local socket";
  }
  tellChange();
}

void QwenPersistentServer::end(const Run& run, std::string diagnostic) {
  {
    const std::lock_guard guard(lock_);
    if (run_.get() != &run) return;
    run_.reset();
    ready_ = starting_ = false;
    failed_ = true;
    diagnostic_ = std::move(diagnostic);
  }
  tellChange();
}

void QwenPersistentServer::shutdown() {
  {
    const std::lock_guard guard(lock_);
    if (run_) run_->cancellation.cancel();
    run_.reset();
    ready_ = starting_ = failed_ = false;
    diagnostic_ = "idle";
  }
  tellChange();
}

Task<std::optional<std::string>> QwenPersistentServer::refine(std::string text) {
  return ask(shared_from_this(), std::move(text));
}

Task<std::optional<std::string>> QwenPersistentServer::ask(std::shared_ptr<QwenPersistentServer> server,
                                                           std::string text) {
  if (server->preparation() != Preparation::ready) co_return std::nullopt;
  auto cancellation = makeOrNothing<WorkerCancellation>();
  if (!cancellation) co_return std::nullopt;
  const Patience patience(std::move(cancellation));
  const auto deadline = server->services_.clock.now() + server->limits_.request;
  auto work = [self = server.get(), given = patience.cancellation(), deadline, text = std::move(text)] {
    return self->exchange(text, deadline, *given);
  };
  auto asked = server->queue_.run(std::move(work));
  auto answer = co_await asked;
  co_return answer;
}

std::optional<std::string> QwenPersistentServer::exchange(const std::string& text, Instant deadline,
                                                          const WorkerCancellation& patience) const {
  std::shared_ptr<Run> run;
  std::shared_ptr<const QwenServerSession> session;
  {
    const std::lock_guard guard(lock_);
    if (!ready_) return std::nullopt;
    run = run_;
    session = run->session;
  }
  if (patience.isCancelled()) return std::nullopt;
  const std::array<const WorkerCancellation*, 2> interruptions{&patience, &run->cancellation};
  const auto body = QwenChat::requestBody(text);
  const auto answer = LocalUnixHTTP(services_.clock, interruptions)
                          .request({.socketURL = session->socketURL,
                                    .token = session->token,
                                    .method = "POST",
                                    .path = "/v1/chat/completions",
                                    .body = body,
                                    .timeout = deadline - services_.clock.now(),
                                    .server = session->server});
  constexpr int okStatus = 200;
  if (!answer || answer->status != okStatus) return std::nullopt;
  const auto content = QwenChat::answer(answer->body);
  return content ? QwenChat::sanitizeResponse(*content) : std::nullopt;
}

QwenPersistentServer::Preparation QwenPersistentServer::preparation() const {
  const std::lock_guard guard(lock_);
  if (ready_) return Preparation::ready;
  if (starting_) return Preparation::preparing;
  return failed_ ? Preparation::failed : Preparation::none;
}

std::string QwenPersistentServer::diagnostic() const {
  const std::lock_guard guard(lock_);
  return diagnostic_;
}

/// Any thread.
void QwenPersistentServer::tellChange() {
  services_.executor.post([weak = weak_from_this()] {
    if (const auto server = weak.lock()) server->onChange_();
  });
}

}  // namespace murmel
