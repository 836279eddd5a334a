#pragma once

#include "Foundation/Async/Signal.h"
#include "Foundation/Async/Task.h"
#include "LocalModels/LanguageModelRuntime.h"
#include "LocalModels/QwenPersistentServer.h"
#include "LocalModels/SmartModelFiles.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// The inference servers of the application: at most one for each model. Main thread. Destroying it ends
/// them all.
class QwenServerPool {
 public:
  struct Settings {
    std::string applicationIdentifier;
    std::filesystem::path temporaryDirectory;
    LanguageModelRuntime runtime;
    QwenServerLimits limits;
  };

  /// `files` and the services must outlive the pool and every server that it gave away.
  QwenServerPool(QwenPersistentServer::Services services, const SmartModelFiles& files, Settings settings);
  ~QwenServerPool();
  QwenServerPool(const QwenServerPool&) = delete;
  QwenServerPool& operator=(const QwenServerPool&) = delete;

  /// The model's server, made when there is none; not started by that.
  [[nodiscard]] std::shared_ptr<QwenPersistentServer> server(SmartLocalModel model);
  /// Makes sure that the model's server exists and is starting, or ready.
  void activate(SmartLocalModel model);
  /// Waits until the model's server has been started. False when it could not be.
  [[nodiscard]] Task<bool> prepared(SmartLocalModel model);

  void shutdownAll();
  /// Frees the memory of every other model.
  void shutdownAllBut(SmartLocalModel model);

  /// The line that the settings show; nothing while nobody has asked for the model.
  [[nodiscard]] std::optional<std::string_view> preparationStatus(SmartLocalModel model) const;
  /// Emitted when a status line may have changed.
  [[nodiscard]] Signal<>& onPreparationChange() { return *changed_; }

 private:
  static Task<bool> prepare(std::shared_ptr<QwenPersistentServer> server, std::shared_ptr<Signal<>> changed);

  QwenPersistentServer::Services services_;
  const SmartModelFiles& files_;
  Settings settings_;
  std::shared_ptr<Signal<>> changed_ = std::make_shared<Signal<>>();
  std::map<SmartLocalModel, std::shared_ptr<QwenPersistentServer>> servers_;
};

}  // namespace murmel
