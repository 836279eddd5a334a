#pragma once

#include "Foundation/Async/Clock.h"
#include "LocalModels/SageNativeAssets.h"
#include "Platform/ProcessLauncher.h"
#include "Product/MRMError.h"
#include "WorkerProcess/WorkerCancellation.h"
#include "WorkerProcess/WorkerChannel.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// How long the Russian corrector may take. The defaults are the application's; tests use shorter ones.
struct SageLimits {
  /// Until "ready": a model of some hundred megabytes read from a slow disk.
  Duration start = std::chrono::seconds(60);
  /// From the question to the answer, the wait for an earlier question included.
  Duration request = std::chrono::seconds(3);
  /// Of that, what the worker leaves for the way back: it gives up by itself and stays warm.
  Duration way = std::chrono::milliseconds(200);
  /// Between the friendly signal and the other one. A worker has nothing to save.
  std::chrono::milliseconds terminationGrace{200};
};

/// Keeps one correction worker alive and asks it, one request at a time. Every call blocks; all of them, and
/// the destruction, belong to one thread, apart from the cancellation. After a failure the worker is gone and
/// the next call starts a new one; a correction that the worker refuses is none.
class SageWorkerClient {
 public:
  /// Whether a file may be executed or loaded as code.
  using MayExecute = std::function<bool(const std::filesystem::path&)>;

  /// `launcher`, `clock` and `cancellation` must outlive the client.
  SageWorkerClient(MayExecute mayExecute, SageLimits limits, ProcessLauncher& launcher, const Clock& clock,
                   const WorkerCancellation& cancellation);
  ~SageWorkerClient();
  SageWorkerClient(const SageWorkerClient&) = delete;
  SageWorkerClient& operator=(const SageWorkerClient&) = delete;

  /// Makes sure that a worker runs and has its model loaded.
  Result<void> load(const SageNativeAssets::Paths& paths);
  /// The corrected text, asked of the worker that is loaded.
  Result<std::string> correct(const std::string& text, Instant deadline);
  [[nodiscard]] bool isLoaded() { return worker_ && worker_->process->isRunning(); }

 private:
  struct Worker {
    std::unique_ptr<ChildProcess> process;
    WorkerChannel channel;
  };

  Result<void> start(const SageNativeAssets::Paths& paths);
  void reset();

  MayExecute mayExecute_;
  SageLimits limits_;
  ProcessLauncher& launcher_;
  const Clock& clock_;
  const WorkerCancellation& cancellation_;
  std::optional<Worker> worker_;
  std::int64_t requestID_ = 0;  ///< the last request; kept when the worker is restarted
};

}  // namespace murmel
