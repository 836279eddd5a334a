#include "Recognition/SpeechWorkerClient.h"

#include "Foundation/Text/Text.h"
#include "Recognition/ParakeetUnknownTokenRecovery.h"
#include "Recognition/WorkerRequest.h"

#include <utility>

namespace murmel {

namespace {

std::unexpected<MRMError> failed(std::string reason) {
  return std::unexpected(MRMError::workerFailed(std::move(reason)));
}

}  // namespace

SpeechWorkerClient::SpeechWorkerClient(SpeechWorkerConfiguration configuration, std::string providerID,
                                       ProcessLauncher& launcher, const Clock& clock,
                                       const WorkerCancellation& cancellation)
    : configuration_(std::move(configuration)),
      providerID_(std::move(providerID)),
      launcher_(launcher),
      clock_(clock),
      cancellation_(cancellation) {}

// The child process kills and reaps itself, without a grace: somebody waits for the end.
SpeechWorkerClient::~SpeechWorkerClient() = default;

Result<void> SpeechWorkerClient::load() {
  if (worker_ && worker_->process->isRunning()) return {};
  reset();
  if (cancellation_.isCancelled()) return failed("worker exited unexpectedly");
  auto started = start();
  if (!started) reset();
  return started;
}

Result<void> SpeechWorkerClient::start() {
  if (!configuration_.modelIntegrityCheck(configuration_.modelURL))
    return failed("model integrity verification failed");
  if (!configuration_.mayExecute(configuration_.workerURL))
    return failed("speech worker signature validation failed");
  const ProcessRequest request{
      .executable = configuration_.workerURL,
      .arguments = {"--model-dir", configuration_.modelURL.string(), "--precision", "int8"},
      .environment = {},
  };
  auto launched = launcher_.launch(request);
  if (!launched) return failed(std::move(launched.error()));
  auto& process = **launched;
  if (!configuration_.runningProcessIntegrityCheck(process, configuration_.workerURL)) {
    process.terminate(configuration_.limits.terminationGrace);
    return failed("running speech worker identity validation failed");
  }
  worker_.emplace(*std::move(launched),
                  WorkerChannel(process.input(), process.output(), clock_, cancellation_));
  auto message = worker_->channel.readMessage(configuration_.limits.start);
  if (!message) return std::unexpected(std::move(message.error()));
  if (message->protocolVersion != WorkerMessage::acceptedProtocolVersion || message->event != "ready")
    return failed(message->errorType.value_or("worker did not become ready"));
  return {};
}

Result<TranscriptionResult> SpeechWorkerClient::transcribe(const CapturedAudio& audio,
                                                           const std::optional<std::string>& language) {
  if (auto loaded = load(); !loaded) return std::unexpected(std::move(loaded.error()));
  ++requestID_;
  const auto request = encodeWorkerRequest(requestID_, audio, language);
  if (!request) {
    reset();
    return failed(request.error());
  }
  auto message = exchange(*request, audio.pcm16LE.size());
  if (!message) {
    reset();
    return std::unexpected(std::move(message.error()));
  }
  auto result = interpret(*std::move(message), language);
  // Silence is an answer like any other; everything else leaves a worker whose state nobody knows.
  if (!result && result.error().which() != MRMError::Case::noSpeech) reset();
  return result;
}

Result<WorkerMessage> SpeechWorkerClient::exchange(const std::string& request, std::size_t audioBytes) {
  auto& channel = worker_->channel;
  const auto& limits = configuration_.limits;
  const auto limit = limits.response(audioBytes);
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
  if (isAnswer && message.event == "error") return failed(message.errorType.value_or("unknown worker error"));
  if (!isAnswer || message.event != "result" || !message.text)
    return failed("unexpected speech worker response");
  auto text = ParakeetUnknownTokenRecovery::apply(text::trimmed(message.text->reveal()), language);
  if (text.empty()) return std::unexpected(MRMError(MRMError::Case::noSpeech));
  return TranscriptionResult{SpokenText(std::move(text)), providerID_, 0};
}

void SpeechWorkerClient::reset() {
  if (!worker_) return;
  // Nobody waits for a good-bye when the provider is going.
  const auto grace = cancellation_.isCancelled() ? std::chrono::milliseconds::zero()
                                                 : configuration_.limits.terminationGrace;
  worker_->process->terminate(grace);
  worker_.reset();
}

}  // namespace murmel
