#include "LocalModels/SageWorkerClient.h"

#include "Foundation/Json/Json.h"
#include "WorkerProcess/ProcessEnd.h"

#include <utility>

namespace murmel {

namespace {

std::string requestLine(std::int64_t id, const std::string& text, std::chrono::milliseconds limit) {
  const Json request = {{"id", id}, {"text", text}, {"limit_ms", limit.count()}};
  return jsonText(request);
}

}  // namespace

SageWorkerClient::SageWorkerClient(SageNativeAssets::Paths paths, MayExecute mayExecute, SageLimits limits,
                                   ProcessLauncher& launcher, const Clock& clock,
                                   const WorkerCancellation& cancellation)
    : paths_(std::move(paths)),
      mayExecute_(std::move(mayExecute)),
      limits_(limits),
      clock_(clock),
      cancellation_(cancellation),
      worker_({.prepareLaunch = [this] { return prepareLaunch(); },
               .checkRunning = [](const ChildProcess& process) -> Result<void> {
                 if (process.runningIdentity() == process.launchedIdentity()) return {};
                 return workerFailed("running correction worker identity validation failed");
               },
               .startLimit = limits_.start,
               .terminationGrace = limits_.terminationGrace},
              launcher, clock, cancellation) {}

Result<ProcessRequest> SageWorkerClient::prepareLaunch() const {
  // The library becomes code of the worker: it is held to the same rule.
  if (!mayExecute_(paths_.worker) || !mayExecute_(paths_.runtime))
    return workerFailed("correction worker signature validation failed");
  return ProcessRequest{
      .executable = paths_.worker,
      .arguments = {"--model-dir", paths_.modelDirectory.string(), "--runtime", paths_.runtime.string()},
      .environment = {},
      .sandbox = {.readable = {paths_.modelDirectory, paths_.runtime}},
  };
}

std::expected<void, std::string> SageWorkerClient::start() {
  if (auto loaded = worker_.load(); !loaded) return std::unexpected(loaded.error().detail());
  return {};
}

void SageWorkerClient::awaitEnd() {
  awaitProcessEnd(worker_.process(), cancellation_, std::nullopt, /*dropsOutput=*/false);
}

std::expected<std::string, ModelProcess::Failure> SageWorkerClient::ask(const std::string& text,
                                                                        Instant deadline,
                                                                        const WorkerCancellation&) {
  const auto limit = deadline - clock_.now();
  const auto workersLimit = std::chrono::duration_cast<std::chrono::milliseconds>(limit - limits_.way);
  if (workersLimit.count() < 1) return std::unexpected(Failure::timedOut);
  auto& channel = worker_.channel();
  // Half a question would be the beginning of the next one.
  if (!channel.writeLine(requestLine(++requestID_, text, workersLimit), limit))
    return std::unexpected(Failure::lost);
  while (true) {
    auto message = channel.readMessage(deadline - clock_.now());
    if (!message) {
      const bool isLate = message.error().detail() == "worker response timed out";
      return std::unexpected(isLate ? Failure::timedOut : Failure::lost);
    }
    if (message->protocolVersion != WorkerMessage::acceptedProtocolVersion)
      return std::unexpected(Failure::lost);
    // The answer to a question that nobody waited for any longer.
    if (message->id && *message->id >= 1 && *message->id < requestID_) continue;
    if (message->id != requestID_) return std::unexpected(Failure::lost);
    if (message->event == "result" && message->text) return std::move(*message->text).reveal();
    return std::unexpected(message->event == "error" ? Failure::refused : Failure::lost);
  }
}

}  // namespace murmel
