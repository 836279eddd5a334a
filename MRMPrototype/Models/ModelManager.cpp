#include "Models/ModelManager.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace murmel {

std::unique_ptr<ModelManager> ModelManager::forStore(Executor& executor,
                                                     std::shared_ptr<ModelInventory> inventory) {
  auto models = speechModels(inventory->store(), inventory->resources());
  return std::make_unique<ModelManager>(executor, std::move(models), std::move(inventory));
}

ModelManager::ModelManager(Executor& executor, std::vector<SpeechModel> models,
                           std::shared_ptr<ModelInventory> inventory)
    : executor_(executor),
      models_(std::move(models)),
      inventory_(std::move(inventory)),
      queue_(executor, "model-manager") {}

ModelManager::~ModelManager() {
  stopping_ = true;
}

std::vector<const SpeechModel*> ModelManager::candidatesFor(const std::filesystem::path& folder) const {
  std::vector<const SpeechModel*> all;
  for (const auto& model : models_) {
    if (model.folder == folder) return {&model};
    all.push_back(&model);
  }
  return all;
}

bool ModelManager::requiredItemsPresent(const std::filesystem::path& folder) const {
  // What was read once and is known to be something else is not there either.
  return std::ranges::any_of(candidatesFor(folder), [&](const auto* model) {
    const auto finding = inventory_->look(*model, folder);
    return finding == Finding::unknown || finding == Finding::verified;
  });
}

bool ModelManager::verifyArtifacts(const std::filesystem::path& folder) const {
  return std::ranges::any_of(candidatesFor(folder), [&](const auto* model) {
    return inventory_->verify(*model, folder, stopping_);
  });
}

void ModelManager::validate() {
  ++validation_;
  choose();
}

void ModelManager::setLanguage(std::optional<std::string> language) {
  if (language == language_) return;
  language_ = std::move(language);
  if (validation_ > 0) validate();
}

std::vector<std::size_t> ModelManager::order() const {
  std::vector<std::size_t> places(models_.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::ranges::stable_partition(places, [this](std::size_t place) {
    return !language_ || knowsLanguage(*models_[place].engine, *language_);
  });
  return places;
}

void ModelManager::choose() {
  const auto places = order();
  for (const auto i : places) {
    const auto finding = inventory_->look(models_[i], models_[i].folder);
    if (finding == Finding::verified) return set(i, SpeechModelState::ready);
    if (finding != Finding::unknown) continue;
    set(i, SpeechModelState::verifying);
    return verifyInBackground(i);
  }
  set(places.front(), SpeechModelState::missing);
}

void ModelManager::verifyInBackground(std::size_t model) {
  queue_.enqueue([this, model, validation = validation_, alive = std::weak_ptr(alive_)] {
    const bool isValid = verifyArtifacts(models_[model].folder);
    executor_.post([this, model, isValid, validation, alive] {
      if (alive.expired() || validation != validation_) return;
      if (isValid) return set(model, SpeechModelState::ready);
      // What could be read is known now to be wrong, and the next model is looked at. What could not be read,
      // or changed under our eyes, stays unknown: that ends here until somebody asks again.
      if (inventory_->look(models_[model], models_[model].folder) == Finding::unknown)
        return set(model, SpeechModelState::missing);
      choose();
    });
  });
}

void ModelManager::set(std::size_t active, SpeechModelState state) {
  const bool changed = std::exchange(active_, active) != active;
  if (std::exchange(state_, state) == state && !changed) return;
  // Posted, so that nobody is called back from inside `validate`.
  executor_.post([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) inventoryChanged_.emit();
  });
}

Registration ModelManager::onInventoryChange(std::function<void()> handler) {
  return inventoryChanged_.subscribe(std::move(handler));
}

}  // namespace murmel
