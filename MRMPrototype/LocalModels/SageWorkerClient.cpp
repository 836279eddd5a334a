#include "LocalModels/SageWorkerClient.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

namespace murmel {

namespace {

using Json = nlohmann::json;

std::unexpected<MRMError> failed(std::string reason) {
  return std::unexpected(MRMError::workerFailed(std::move(reason)));
}

std::string requestLine(std::int64_t id, const std::string& text, std::chrono::milliseconds limit) {
  const Json request = {{"id", id}, {"text", text}, {"limit_ms", limit.count()}};
  constexpr int noIndentation = -1;
  return request.dump(noIndentation, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

}  // namespace

SageWorkerClient::SageWorkerClient(MayExecute mayExecute, SageLimits limits, ProcessLauncher& launcher,
                                   const Clock& clock, const WorkerCancellation& cancellation)
    : mayExecute_(std::move(mayExecute)),
      limits_(limits),
      launcher_(launcher),
      clock_(clock),
      cancellation_(cancellation) {}

// The child process kills and reaps itself, without a grace: somebody waits for the end.
SageWorkerClient::~SageWorkerClient() = default;

Result<void> SageWorkerClient::load(const SageNativeAssets::Paths& paths) {
  if (isLoaded()) return {};
  reset();
  if (cancellation_.isCancelled()) return failed("worker exited unexpectedly");
  auto started = start(paths);
  if (!started) reset();
  return started;
}

Result<void> SageWorkerClient::start(const SageNativeAssets::Paths& paths) {
  // The library becomes code of the worker: it is held to the same rule.
  if (!mayExecute_(paths.worker) || !mayExecute_(paths.runtime))
    return failed("correction worker signature validation failed");
  auto launched = launcher_.launch(
      {.executable = paths.worker,
       .arguments = {"--model-dir", paths.modelDirectory.string(), "--runtime", paths.runtime.string()},
       .environment = {}});
  if (!launched) return failed(std::move(launched.error()));
  auto& process = **launched;
  worker_.emplace(*std::move(launched),
                  WorkerChannel(process.input(), process.output(), clock_, cancellation_));
  if (process.runningIdentity() != process.launchedIdentity())
    return failed("running correction worker identity validation failed");
  auto message = worker_->channel.readMessage(limits_.start);
  if (!message) return std::unexpected(std::move(message.error()));
  if (message->protocolVersion != WorkerMessage::acceptedProtocolVersion || message->event != "ready")
    return failed(message->errorType.value_or("worker did not become ready"));
  return {};
}

Result<std::string> SageWorkerClient::correct(const std::string& text, Instant deadline) {
  if (!isLoaded()) return failed("worker exited unexpectedly");
  const auto limit = deadline - clock_.now();
  const auto workersLimit = std::chrono::duration_cast<std::chrono::milliseconds>(limit - limits_.way);
  if (workersLimit.count() < 1) return failed("worker response timed out");
  auto& channel = worker_->channel;
  const auto sent = channel.writeLine(requestLine(++requestID_, text, workersLimit), limit);
  auto message = sent ? channel.readMessage(deadline - clock_.now()) : std::unexpected(sent.error());
  if (!message) {
    reset();
    return std::unexpected(std::move(message.error()));
  }
  const bool isAnswer =
      message->protocolVersion == WorkerMessage::acceptedProtocolVersion && message->id == requestID_;
  if (isAnswer && message->event == "result" && message->text) return std::move(*message->text).reveal();
  if (isAnswer && message->event == "error")
    return failed(message->errorType.value_or("unknown worker error"));
  // Nobody knows what it is answering.
  reset();
  return failed("unexpected correction worker response");
}

void SageWorkerClient::reset() {
  if (!worker_) return;
  // Nobody waits for a good-bye when the provider is going.
  worker_->process->terminate(cancellation_.isCancelled() ? std::chrono::milliseconds::zero()
                                                          : limits_.terminationGrace);
  worker_.reset();
}

}  // namespace murmel
