#include "LocalModels/QwenPersistentServer.h"

#include "Foundation/RawValue.h"

#include <utility>

namespace murmel {

QwenPersistentServer::QwenPersistentServer(Services services, const std::string& applicationIdentifier,
                                           SmartLocalModel model, ConfigurationSource configuration,
                                           QwenServerLimits limits, ModelSupervisor::Events events)
    : providerID_(rawValue(model)), configuration_(std::move(configuration)) {
  auto source = [configuration = configuration_, limits, &launcher = services.launcher,
                 &clock = services.clock]() -> std::expected<ModelSupervisor::Make, std::string> {
    auto found = configuration();
    if (!found) return std::unexpected(std::move(found.error()));
    found->limits = limits;
    return [found = *std::move(found), &launcher, &clock](const WorkerCancellation& cancellation) {
      return std::make_unique<QwenServerRun>(found, launcher, clock, cancellation);
    };
  };
  supervisor_ =
      std::make_shared<ModelSupervisor>(ModelSupervisor::Services{services.executor, services.clock},
                                        applicationIdentifier + ".qwen-server." + providerID_,
                                        std::move(source), limits.asking, std::move(events));
}

}  // namespace murmel
