#pragma once

#include "Foundation/Async/Clock.h"
#include "LocalModels/ModelSupervisor.h"
#include "LocalModels/SageNativeAssets.h"
#include "Platform/ProcessLauncher.h"
#include "WorkerProcess/KeptWorker.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace murmel {

/// How long the Russian corrector may take. The defaults are the application's; tests use shorter ones.
struct SageLimits {
  /// Until "ready": a model of some hundred megabytes read from a slow disk.
  Duration start = std::chrono::seconds(60);
  /// Of the time for an answer, what the worker leaves for the way back: it gives up by itself and stays
  /// warm.
  Duration way = std::chrono::milliseconds(200);
  /// Between the friendly signal and the other one. A worker has nothing to save.
  std::chrono::milliseconds terminationGrace{200};
  ModelSupervisor::Limits asking;
};

/// One life of a correction worker.
class SageWorkerClient final : public ModelProcess {
 public:
  /// Whether a file may be executed or loaded as code.
  using MayExecute = std::function<bool(const std::filesystem::path&)>;

  /// `launcher`, `clock` and `cancellation` must outlive the client.
  SageWorkerClient(SageNativeAssets::Paths paths, MayExecute mayExecute, SageLimits limits,
                   ProcessLauncher& launcher, const Clock& clock, const WorkerCancellation& cancellation);

  std::expected<void, std::string> start() override;
  void awaitEnd() override;
  /// The corrected text. A correction that the worker refuses is none.
  std::expected<std::string, Failure> ask(const std::string& text, Instant deadline,
                                          const WorkerCancellation& patience) override;

 private:
  [[nodiscard]] Result<ProcessRequest> prepareLaunch() const;

  SageNativeAssets::Paths paths_;
  MayExecute mayExecute_;
  SageLimits limits_;
  const Clock& clock_;
  const WorkerCancellation& cancellation_;
  KeptWorker worker_;
  std::int64_t requestID_ = 0;
};

}  // namespace murmel
