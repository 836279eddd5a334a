#include "LocalModels/QwenServerPool.h"

#include "Foundation/Async/OneShot.h"
#include "Product/MRMError.h"

#include <utility>
#include <variant>

namespace murmel {

namespace {

using Preparation = QwenPersistentServer::Preparation;

}  // namespace

QwenServerPool::QwenServerPool(QwenPersistentServer::Services services, const SmartModelFiles& files,
                               Settings settings)
    : services_(services), files_(files), settings_(std::move(settings)) {}

QwenServerPool::~QwenServerPool() {
  // All at once, and only then one by one.
  shutdownAll();
}

std::shared_ptr<QwenPersistentServer> QwenServerPool::server(SmartLocalModel model) {
  auto& server = servers_[model];
  if (server) return server;
  auto configuration = [files = &files_, settings = settings_,
                        model]() -> std::expected<QwenServerConfiguration, std::string> {
    auto executable = settings.runtime.installedExecutable();
    auto file = files->modelFile(model);
    if (!executable || !file)
      return std::unexpected(MRMError(MRMError::Case::smartModelMissing).localizedDescription());
    return QwenServerConfiguration{.executable = *std::move(executable),
                                   .model = *std::move(file),
                                   .temporaryDirectory = settings.temporaryDirectory,
                                   .mayExecute = settings.runtime.mayExecute,
                                   .limits = {}};
  };
  server = std::make_shared<QwenPersistentServer>(
      services_, settings_.applicationIdentifier, model, std::move(configuration), settings_.limits,
      ModelSupervisor::Events{
          .preparationChanged = [changed = changed_] { changed->emit(); },
          .failed =
              [failed = settings_.failed, model](const std::string& reason) {
                if (failed) failed(model, reason);
              },
      });
  return server;
}

void QwenServerPool::activate(SmartLocalModel model) {
  server(model)->startIfNeeded();
}

Task<void> QwenServerPool::await(std::shared_ptr<Signal<>> changed) {
  auto [sender, receiver] = makeOneShot<std::monostate>();
  auto waiting = std::make_shared<OneShotSender<std::monostate>>(std::move(sender));
  const auto observer = changed->subscribe([waiting] { waiting->send({}); });
  co_await receiver;
}

void QwenServerPool::shutdownAll() {
  for (const auto& [model, server] : servers_) server->shutdown();
}

void QwenServerPool::shutdownAllBut(SmartLocalModel model) {
  for (const auto& [other, server] : servers_) {
    if (other != model) server->shutdown();
  }
}

std::optional<std::string_view> QwenServerPool::preparationStatus(SmartLocalModel model) const {
  const auto found = servers_.find(model);
  if (found == servers_.end()) return std::nullopt;
  switch (found->second->preparation()) {
    case Preparation::none:
      return std::nullopt;
    case Preparation::preparing:
      return "Preparing for fast dictation…";
    case Preparation::ready:
      return "Ready · kept warm in memory";
    case Preparation::failed:
      return "Preparation failed · original text remains available";
  }
  std::unreachable();
}

std::string QwenServerPool::failure(SmartLocalModel model) const {
  const auto found = servers_.find(model);
  const bool hasFailed = found != servers_.end() && found->second->preparation() == Preparation::failed;
  return hasFailed ? found->second->diagnostic() : std::string();
}

}  // namespace murmel
