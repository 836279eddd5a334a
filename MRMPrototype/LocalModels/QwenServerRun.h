#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Crypto/SecretBytes.h"
#include "LocalModels/QwenServerConfiguration.h"
#include "LocalModels/QwenServerPlace.h"
#include "Platform/ProcessLauncher.h"
#include "WorkerProcess/WorkerCancellation.h"

#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <sys/types.h>

namespace murmel {

/// How to reach a server that is ready. Immutable and shared between threads.
struct QwenServerSession {
  std::filesystem::path socketURL;
  SecretBytes token;
  pid_t server = 0;
};

/// One life of an inference server, from the start to its end. Every call blocks; all of them, and the
/// destruction, belong to one thread, which must outlive the server: the system ends a child with the thread
/// that launched it. Destroying it ends the process and removes its socket and its key.
class QwenServerRun {
 public:
  /// All of them must outlive the run. The cancellation ends every wait.
  QwenServerRun(const QwenServerConfiguration& configuration, ProcessLauncher& launcher, const Clock& clock,
                const WorkerCancellation& cancellation);
  ~QwenServerRun();
  QwenServerRun(const QwenServerRun&) = delete;
  QwenServerRun& operator=(const QwenServerRun&) = delete;

  /// Starts the server and waits until it accepts requests. The error is a short reason.
  std::expected<std::shared_ptr<const QwenServerSession>, std::string> start();

  /// Waits until the process ends, or for the cancellation.
  void awaitEnd();

 private:
  std::expected<void, std::string> launch(const std::filesystem::path& apiKeyFileURL);
  std::expected<void, std::string> awaitReadiness();
  [[nodiscard]] bool isReady(Duration limit) const;
  bool outputEnds(std::optional<std::chrono::milliseconds> within);

  const QwenServerConfiguration& configuration_;
  ProcessLauncher& launcher_;
  const Clock& clock_;
  const WorkerCancellation& cancellation_;
  std::optional<QwenServerPlace> place_;
  std::shared_ptr<const QwenServerSession> session_;
  std::unique_ptr<ChildProcess> process_;  ///< after the place: it goes first
};

}  // namespace murmel
