#pragma once

#include "Foundation/Async/Clock.h"
#include "Platform/ProcessLauncher.h"
#include "Product/MRMError.h"
#include "WorkerProcess/WorkerCancellation.h"
#include "WorkerProcess/WorkerChannel.h"
#include "WorkerProcess/WorkerLimits.h"

#include <functional>
#include <memory>
#include <optional>

namespace murmel {

/// One worker process that is kept between requests: started when it is needed, ready when it has said so,
/// replaced when it has ended. Every call blocks; all of them, and the destruction, belong to one thread,
/// apart from the cancellation.
class KeptWorker {
 public:
  /// How this kind of worker is started and told from another program.
  struct Kind {
    std::function<Result<ProcessRequest>()> prepareLaunch;
    std::function<Result<void>(const ChildProcess&)> checkRunning;
    Duration startLimit{};
    std::chrono::milliseconds terminationGrace{};
  };

  /// `launcher`, `clock` and `cancellation` must outlive it.
  KeptWorker(Kind kind, ProcessLauncher& launcher, const Clock& clock,
             const WorkerCancellation& cancellation);
  ~KeptWorker();
  KeptWorker(const KeptWorker&) = delete;
  KeptWorker& operator=(const KeptWorker&) = delete;

  /// Makes sure that a worker runs and has said that it is ready.
  Result<void> load();
  [[nodiscard]] bool isLoaded() { return worker_ && worker_->process->isRunning(); }
  /// The conversation with the worker that is loaded.
  [[nodiscard]] WorkerChannel& channel() { return worker_->channel; }
  /// Of the worker that is loaded.
  [[nodiscard]] const ChildProcess& process() const { return *worker_->process; }
  /// Ends the worker; the next `load` starts another.
  void reset();

 private:
  struct Worker {
    std::unique_ptr<ChildProcess> process;
    WorkerChannel channel;
  };

  Result<void> start();

  Kind kind_;
  ProcessLauncher& launcher_;
  const Clock& clock_;
  const WorkerCancellation& cancellation_;
  std::optional<Worker> worker_;
};

}  // namespace murmel
