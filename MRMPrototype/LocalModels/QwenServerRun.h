#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Crypto/SecretBytes.h"
#include "LocalModels/ModelSupervisor.h"
#include "LocalModels/QwenServerPlace.h"
#include "Platform/ProcessLauncher.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// How long an inference server may take to start. The defaults are the application's; tests use shorter
/// ones.
struct QwenServerLimits {
  /// Until it accepts requests: a model of several gigabytes read from a slow disk.
  Duration readiness = std::chrono::seconds(60);
  /// Between two looks at whether it does.
  std::chrono::milliseconds readinessInterval{50};
  /// For one look: a server that takes the connection and says nothing is not ready.
  Duration readinessProbe = std::chrono::seconds(1);
  /// Between the friendly signal and the other one. A server has nothing to save.
  std::chrono::milliseconds terminationGrace{0};
  ModelSupervisor::Limits asking;
};

/// What one start of an inference server is made of.
struct QwenServerConfiguration {
  std::filesystem::path executable;
  std::filesystem::path model;
  std::filesystem::path temporaryDirectory;
  /// Whether the executable may be started; called on the server's own thread.
  std::function<bool(const std::filesystem::path&)> mayExecute;
  QwenServerLimits limits;

  [[nodiscard]] std::vector<std::string> arguments(const std::filesystem::path& socketURL,
                                                   const std::filesystem::path& apiKeyFileURL) const;
};

/// One life of an inference server. Destroying it ends the process and removes its socket and its key.
class QwenServerRun final : public ModelProcess {
 public:
  /// The launcher, the clock and the cancellation, which ends every wait, must outlive the run.
  QwenServerRun(QwenServerConfiguration configuration, ProcessLauncher& launcher, const Clock& clock,
                const WorkerCancellation& cancellation);
  ~QwenServerRun() override;
  QwenServerRun(const QwenServerRun&) = delete;
  QwenServerRun& operator=(const QwenServerRun&) = delete;

  std::expected<void, std::string> start() override;
  void awaitEnd() override;
  /// The model's answer to a request to format `text`, without its reasoning.
  std::expected<std::string, Failure> ask(const std::string& text, Instant deadline,
                                          const WorkerCancellation& patience) override;

 private:
  std::expected<void, std::string> launch(const std::filesystem::path& apiKeyFileURL);
  std::expected<void, std::string> awaitReadiness();
  [[nodiscard]] bool isReady(Duration limit) const;

  const QwenServerConfiguration configuration_;
  ProcessLauncher& launcher_;
  const Clock& clock_;
  const WorkerCancellation& cancellation_;
  SecretBytes token_;
  std::optional<QwenServerPlace> place_;
  std::unique_ptr<ChildProcess> process_;  ///< after the place: it goes first
};

}  // namespace murmel
