#pragma once

#include "Audio/CapturedAudio.h"
#include "Foundation/Async/Clock.h"
#include "Platform/ProcessLauncher.h"
#include "Product/MRMError.h"
#include "Recognition/TranscriptionProvider.h"
#include "WorkerProcess/KeptWorker.h"
#include "WorkerProcess/WorkerLimits.h"

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
  /// Makes sure that a worker runs and has its model loaded.
  Result<void> load();
  /// `vocabulary`: names that may be said, for an engine that takes them.
  Result<TranscriptionResult> transcribe(const CapturedAudio& audio,
                                         const std::optional<std::string>& language,
                                         const std::vector<std::string>& vocabulary);
  /// Lets the worker go, and the memory that its model takes.
  void unload() { worker_.reset(); }

 private:
  [[nodiscard]] Result<ProcessRequest> prepareLaunch() const;
  Result<WorkerMessage> exchange(const std::string& request, double audioSeconds);
  [[nodiscard]] Result<TranscriptionResult> interpret(WorkerMessage message,
                                                      const std::optional<std::string>& language) const;

  SpeechWorkerConfiguration configuration_;
  std::string providerID_;
  KeptWorker worker_;
  std::int64_t requestID_ = 0;  ///< the last request; kept when the worker is restarted
};

}  // namespace murmel
