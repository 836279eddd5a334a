#pragma once

#include "Foundation/Async/Signal.h"
#include "Foundation/Async/Task.h"
#include "LocalModels/LanguageModelRuntime.h"
#include "LocalModels/QwenPersistentServer.h"
#include "LocalModels/SmartModelFiles.h"

#include <filesystem>
#include <functional>
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
    /// Why a server ended, or could not be started.
    std::function<void(SmartLocalModel model, const std::string& reason)> failed = nullptr;
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

  void shutdownAll();
  /// Frees the memory of every other model.
  void shutdownAllBut(SmartLocalModel model);

  /// The line that the settings show; nothing while nobody has asked for the model.
  [[nodiscard]] std::optional<std::string_view> preparationStatus(SmartLocalModel model) const;
  /// Why its preparation failed; empty when it has not.
  [[nodiscard]] std::string failure(SmartLocalModel model) const;
  /// Emitted when a status line may have changed.
  [[nodiscard]] std::shared_ptr<Signal<>> onPreparationChange() { return changed_; }
  /// Waits for it.
  [[nodiscard]] Task<void> nextChange() { return await(changed_); }

 private:
  static Task<void> await(std::shared_ptr<Signal<>> changed);

  QwenPersistentServer::Services services_;
  const SmartModelFiles& files_;
  Settings settings_;
  std::shared_ptr<Signal<>> changed_ = std::make_shared<Signal<>>();
  std::map<SmartLocalModel, std::shared_ptr<QwenPersistentServer>> servers_;
};

}  // namespace murmel
