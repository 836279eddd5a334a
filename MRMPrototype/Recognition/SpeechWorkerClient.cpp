#include "Recognition/SpeechWorkerClient.h"

#include "Foundation/Text/Text.h"
#include "Recognition/ParakeetUnknownTokenRecovery.h"
#include "Recognition/WorkerRequest.h"

#include <utility>

namespace murmel {

SpeechWorkerClient::SpeechWorkerClient(SpeechWorkerConfiguration configuration, std::string providerID,
                                       ProcessLauncher& launcher, const Clock& clock,
                                       const WorkerCancellation& cancellation)
    : configuration_(std::move(configuration)),
      providerID_(std::move(providerID)),
      worker_({.prepareLaunch = [this] { return prepareLaunch(); },
               .checkRunning = [this](const ChildProcess& process) -> Result<void> {
                 if (configuration_.runningProcessIntegrityCheck(process, configuration_.workerURL))
                   return {};
                 return workerFailed("running speech worker identity validation failed");
               },
               .startLimit = configuration_.limits.start,
               .terminationGrace = configuration_.limits.terminationGrace},
              launcher, clock, cancellation) {}

Result<void> SpeechWorkerClient::load() {
  return worker_.load();
}

Result<ProcessRequest> SpeechWorkerClient::prepareLaunch() const {
  if (!configuration_.modelIntegrityCheck(configuration_.modelURL))
    return workerFailed("model integrity verification failed");
  if (!configuration_.mayExecute(configuration_.workerURL))
    return workerFailed("speech worker signature validation failed");
  return ProcessRequest{
      .executable = configuration_.workerURL,
      .arguments = {"--model-dir", configuration_.modelURL.string(), "--precision", "int8"},
      .environment = {},
      .sandbox = {.readable = {configuration_.modelURL}},
  };
}

Result<TranscriptionResult> SpeechWorkerClient::transcribe(const CapturedAudio& audio,
                                                           const std::optional<std::string>& language,
                                                           const std::vector<std::string>& vocabulary) {
  if (auto loaded = load(); !loaded) return std::unexpected(std::move(loaded.error()));
  ++requestID_;
  const auto request = encodeWorkerRequest(requestID_, audio, language, vocabulary);
  if (!request) {
    worker_.reset();
    return workerFailed(request.error());
  }
  auto message = exchange(*request, audio.duration());
  if (!message) {
    worker_.reset();
    return std::unexpected(std::move(message.error()));
  }
  auto result = interpret(*std::move(message), language);
  // Silence is an answer like any other; everything else leaves a worker whose state nobody knows.
  if (!result && result.error().which() != MRMError::Case::noSpeech) worker_.reset();
  return result;
}

Result<WorkerMessage> SpeechWorkerClient::exchange(const std::string& request, double audioSeconds) {
  auto& channel = worker_.channel();
  const auto& limits = configuration_.limits;
  const auto limit = limits.response(secondsToDuration(audioSeconds));
  const auto written = channel.writeLine(request, limit);
  if (written) return channel.readMessage(limit);
  if (written.error().detail() != "worker input unavailable") return std::unexpected(written.error());
  // The worker has stopped listening, most likely because it died: its last words or its end say more than
  // the broken pipe.
  auto lastWords = channel.readMessage(limits.lastWords);
  if (lastWords || lastWords.error().detail() == "worker exited unexpectedly") return lastWords;
  return std::unexpected(written.error());
}

Result<TranscriptionResult> SpeechWorkerClient::interpret(WorkerMessage message,
                                                          const std::optional<std::string>& language) const {
  const bool isAnswer =
      message.protocolVersion == WorkerMessage::acceptedProtocolVersion && message.id == requestID_;
  if (isAnswer && message.event == "error")
    return workerFailed(message.errorType.value_or("unknown worker error"));
  if (!isAnswer || message.event != "result" || !message.text)
    return workerFailed("unexpected speech worker response");
  auto text = ParakeetUnknownTokenRecovery::apply(text::trimmed(message.text->reveal()), language);
  if (text.empty()) return std::unexpected(MRMError(MRMError::Case::noSpeech));
  return TranscriptionResult{SpokenText(std::move(text)), providerID_, 0};
}

}  // namespace murmel
