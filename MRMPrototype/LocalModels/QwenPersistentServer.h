#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/SerialQueue.h"
#include "Foundation/Async/Task.h"
#include "LocalModels/QwenServerConfiguration.h"
#include "LocalModels/QwenServerRun.h"
#include "Platform/ProcessLauncher.h"
#include "Refinement/SmartLocalModel.h"
#include "WorkerProcess/WorkerCancellation.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace murmel {

/// The inference server of one model, kept warm between dictations. Main thread; requests wait on a thread of
/// their own, one at a time, and the process is started and watched on another.
///
/// Held by whoever asks: a request that runs when everybody else lets go is still answered.
class QwenPersistentServer : public std::enable_shared_from_this<QwenPersistentServer> {
 public:
  /// All of it must outlive the server.
  struct Services {
    Executor& executor;
    const Clock& clock;
    ProcessLauncher& launcher;
  };

  enum class Preparation { none, preparing, ready, failed };

  /// What is to be started now, or the reason why nothing can be. Asked at every start, on the main thread.
  using ConfigurationSource = std::function<std::expected<QwenServerConfiguration, std::string>()>;

  /// `onChange` is called on the main thread, later, whenever the preparation has changed.
  QwenPersistentServer(Services services, const std::string& applicationIdentifier, SmartLocalModel model,
                       ConfigurationSource configuration, QwenServerLimits limits,
                       std::function<void()> onChange);
  ~QwenPersistentServer();
  QwenPersistentServer(const QwenPersistentServer&) = delete;
  QwenPersistentServer& operator=(const QwenPersistentServer&) = delete;

  [[nodiscard]] const std::string& providerID() const { return providerID_; }
  [[nodiscard]] SmartLocalModel model() const { return model_; }

  /// Whether the model's file and the runtime are there.
  [[nodiscard]] bool isInstalled() const { return configuration_().has_value(); }

  /// Starts the process; nothing happens when it is ready or starting. After a failure it starts again.
  void startIfNeeded();

  /// The model's answer to a request to format `text`, without its reasoning. Nothing when the server is not
  /// ready, and when no usable answer has come within the limit, the wait for an earlier request included.
  /// Destroying the task gives the request up.
  [[nodiscard]] Task<std::optional<std::string>> refine(std::string text);

  /// Ends the process and removes its socket, soon: the destruction waits for it. Requests get no answer.
  void shutdown();

  [[nodiscard]] Preparation preparation() const;
  /// A short status for logs and the curious: "idle", "starting", "process running on private local socket",
  /// or why the last start or the last process ended. Never holds a path, a key or a word.
  [[nodiscard]] std::string diagnostic() const;

 private:
  struct Run;
  class Patience;

  static Task<std::optional<std::string>> ask(std::shared_ptr<QwenPersistentServer> server, std::string text);
  [[nodiscard]] std::optional<std::string> exchange(const std::string& text, Instant deadline,
                                                    const WorkerCancellation& patience) const;
  void serve(const std::shared_ptr<Run>& run, const QwenServerConfiguration& configuration);
  void becomeReady(const Run& run, std::shared_ptr<const QwenServerSession> session);
  void end(const Run& run, std::string diagnostic);
  void tellChange();

  const std::string providerID_;
  const SmartLocalModel model_;
  const Services services_;
  const ConfigurationSource configuration_;
  const QwenServerLimits limits_;
  const std::function<void()> onChange_;

  mutable std::mutex lock_;
  std::shared_ptr<Run> run_;  ///< the one that starts or is ready; guarded, as all up to the queues
  bool ready_ = false;
  bool starting_ = false;
  bool failed_ = false;
  std::string diagnostic_ = "idle";

  SerialQueue queue_;
  SerialQueue startupQueue_;  ///< busy as long as the process lives
};

}  // namespace murmel
