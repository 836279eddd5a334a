#include "WorkerProcess/KeptWorker.h"

#include <utility>

namespace murmel {

KeptWorker::KeptWorker(Kind kind, ProcessLauncher& launcher, const Clock& clock,
                       const WorkerCancellation& cancellation)
    : kind_(std::move(kind)), launcher_(launcher), clock_(clock), cancellation_(cancellation) {}

// The child process kills and reaps itself, without a grace: somebody waits for the end.
KeptWorker::~KeptWorker() = default;

Result<void> KeptWorker::load() {
  if (isLoaded()) return {};
  reset();
  if (cancellation_.isCancelled()) return workerFailed("worker exited unexpectedly");
  auto started = start();
  if (!started) reset();
  return started;
}

Result<void> KeptWorker::start() {
  const auto request = kind_.prepareLaunch();
  if (!request) return std::unexpected(request.error());
  auto launched = launcher_.launch(*request);
  if (!launched) return workerFailed(std::move(launched.error()));
  auto& process = **launched;
  worker_.emplace(*std::move(launched),
                  WorkerChannel(process.input(), process.output(), clock_, cancellation_));
  if (auto checked = kind_.checkRunning(process); !checked) return checked;
  auto message = worker_->channel.readMessage(kind_.startLimit);
  if (!message) return std::unexpected(std::move(message.error()));
  if (message->protocolVersion != WorkerMessage::acceptedProtocolVersion || message->event != "ready")
    return workerFailed(message->errorType.value_or("worker did not become ready"));
  return {};
}

void KeptWorker::reset() {
  if (!worker_) return;
  // Nobody waits for a good-bye when the owner is going.
  worker_->process->terminate(cancellation_.isCancelled() ? std::chrono::milliseconds::zero()
                                                          : kind_.terminationGrace);
  worker_.reset();
}

}  // namespace murmel
