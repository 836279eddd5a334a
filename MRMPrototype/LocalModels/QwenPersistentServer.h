#pragma once

#include "LocalModels/ModelSupervisor.h"
#include "LocalModels/QwenServerRun.h"
#include "Platform/ProcessLauncher.h"
#include "Refinement/SmartLocalModel.h"

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// The inference server of one model, kept warm between dictations. Main thread.
class QwenPersistentServer {
 public:
  /// All of it must outlive the server.
  struct Services {
    Executor& executor;
    const Clock& clock;
    ProcessLauncher& launcher;
  };

  using Preparation = ModelSupervisor::Preparation;

  /// What is to be started now, or the reason why nothing can be. Asked at every start, on the main thread.
  using ConfigurationSource = std::function<std::expected<QwenServerConfiguration, std::string>()>;

  QwenPersistentServer(Services services, const std::string& applicationIdentifier, SmartLocalModel model,
                       ConfigurationSource configuration, QwenServerLimits limits,
                       ModelSupervisor::Events events);

  [[nodiscard]] const std::string& providerID() const { return providerID_; }

  /// Whether the model's file and the runtime are there.
  [[nodiscard]] bool isInstalled() const { return configuration_().has_value(); }

  void startIfNeeded() { supervisor_->startIfNeeded(); }
  /// What `reading` makes of the model's answer to a request to format `text`; see `ModelSupervisor::ask`.
  [[nodiscard]] Task<std::optional<SpokenText>> refine(SpokenText text, ModelSupervisor::Reading reading) {
    return supervisor_->ask(std::move(text), reading);
  }
  void shutdown() { supervisor_->shutdown(); }

  [[nodiscard]] Preparation preparation() const { return supervisor_->preparation(); }
  [[nodiscard]] std::string diagnostic() const { return supervisor_->diagnostic(); }

 private:
  std::string providerID_;
  ConfigurationSource configuration_;
  std::shared_ptr<ModelSupervisor> supervisor_;
};

}  // namespace murmel
