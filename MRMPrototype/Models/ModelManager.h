#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/SerialQueue.h"
#include "Foundation/Async/Signal.h"
#include "Models/ModelInventory.h"
#include "Models/SpeechModelStore.h"
#include "Models/SpeechModels.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// The store of the speech model: of the models that this platform can run it finds the best that is
/// installed, and verifies every file by its SHA-256, once and again after a change.
class ModelManager final : public SpeechModelStore {
 public:
  /// The models of the inventory's store and the packaged ones, as far as they can run here (see
  /// speechModels).
  static std::unique_ptr<ModelManager> forStore(Executor& executor,
                                                std::shared_ptr<ModelInventory> inventory);

  /// `models`: the preferred first; at least one. Nothing is looked at before `validate`.
  ModelManager(Executor& executor, std::vector<SpeechModel> models,
               std::shared_ptr<ModelInventory> inventory = std::make_shared<ModelInventory>());
  /// The packaged model only.
  explicit ModelManager(Executor& executor) : ModelManager(executor, {packagedSpeechModel()}) {}
  /// Interrupts a verification that runs.
  ~ModelManager() override;

  [[nodiscard]] SpeechModelState state() const override { return state_; }
  /// Of the model that is ready or being verified; of the preferred one when there is none.
  [[nodiscard]] std::filesystem::path activeModelURL() const override { return models_[active_].folder; }
  /// Of the same model.
  [[nodiscard]] const SpeechEngineRow& activeEngine() const { return *models_[active_].engine; }
  [[nodiscard]] bool requiredItemsPresent(const std::filesystem::path& folder) const override;
  [[nodiscard]] bool verifyArtifacts(const std::filesystem::path& folder) const override;
  /// The language that is forced, if any: a model whose engine knows it goes before one whose engine does
  /// not.
  void setLanguage(std::optional<std::string> language);
  /// What can be seen without reading (a file that is missing, of another size, or as it was when it was
  /// verified) shows in `state` at once; the rest follows.
  void validate() override;
  [[nodiscard]] Registration onInventoryChange(std::function<void()> handler) override;

 private:
  using Finding = ModelInventory::Finding;

  /// The models whose files `folder` may hold: the one that lives there, or any.
  [[nodiscard]] std::vector<const SpeechModel*> candidatesFor(const std::filesystem::path& folder) const;
  /// The models' places, the preferred one first.
  [[nodiscard]] std::vector<std::size_t> order() const;
  void choose();
  void verifyInBackground(std::size_t model);
  void set(std::size_t active, SpeechModelState state);

  Executor& executor_;
  const std::vector<SpeechModel> models_;
  const std::shared_ptr<ModelInventory> inventory_;
  std::optional<std::string> language_;
  std::size_t active_ = 0;
  SpeechModelState state_ = SpeechModelState::missing;
  std::uint64_t validation_ = 0;  ///< counts calls, so that an overtaken verification says nothing
  Signal<> inventoryChanged_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< weakly held by what was posted
  std::atomic<bool> stopping_ = false;
  SerialQueue queue_;  ///< last: stopped before what its job uses goes
};

}  // namespace murmel
