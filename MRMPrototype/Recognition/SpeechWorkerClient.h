#pragma once

#include "Audio/CapturedAudio.h"
#include "Foundation/Async/Clock.h"
#include "Platform/ProcessLauncher.h"
#include "Product/MRMError.h"
#include "Recognition/TranscriptionProvider.h"
#include "Recognition/WorkerLimits.h"
#include "WorkerProcess/WorkerCancellation.h"
#include "WorkerProcess/WorkerChannel.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// What a speech worker is started with and checked against. The functions are called on the worker's queue.
struct SpeechWorkerConfiguration {
  std::filesystem::path workerURL;  ///< the executable
  std::filesystem::path modelURL;   ///< the folder of the installed model
  std::function<bool(const std::filesystem::path& model)> modelIntegrityCheck;
  std::function<bool(const std::filesystem::path& worker)> mayExecute;
  std::function<bool(const ChildProcess& process, const std::filesystem::path& worker)>
      runningProcessIntegrityCheck;
  WorkerLimits limits;
};

/// Keeps one speech worker alive and asks it, one request at a time. Every call blocks; all of them, and the
/// destruction, belong to one thread, apart from the cancellation. After a failure the worker is gone and the
/// next call starts a new one.
class SpeechWorkerClient {
 public:
  /// `launcher`, `clock` and `cancellation` must outlive the client.
  SpeechWorkerClient(SpeechWorkerConfiguration configuration, std::string providerID,
                     ProcessLauncher& launcher, const Clock& clock, const WorkerCancellation& cancellation);
  ~SpeechWorkerClient();
  SpeechWorkerClient(const SpeechWorkerClient&) = delete;
  SpeechWorkerClient& operator=(const SpeechWorkerClient&) = delete;

  /// Makes sure that a worker runs and has its model loaded.
  Result<void> load();
  Result<TranscriptionResult> transcribe(const CapturedAudio& audio,
                                         const std::optional<std::string>& language);

 private:
  struct Worker {
    std::unique_ptr<ChildProcess> process;
    WorkerChannel channel;
  };

  Result<void> start();
  Result<WorkerMessage> exchange(const std::string& request, std::size_t audioBytes);
  [[nodiscard]] Result<TranscriptionResult> interpret(WorkerMessage message,
                                                      const std::optional<std::string>& language) const;
  void reset();

  SpeechWorkerConfiguration configuration_;
  std::string providerID_;
  ProcessLauncher& launcher_;
  const Clock& clock_;
  const WorkerCancellation& cancellation_;
  std::optional<Worker> worker_;
  std::int64_t requestID_ = 0;  ///< the last request; kept when the worker is restarted
};

}  // namespace murmel
