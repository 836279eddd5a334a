#include "Models/SmartModelManager.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

constexpr std::string_view sagePrefix = "sage:";

}  // namespace

SmartModelManager::SmartModelManager(Executor& executor, std::shared_ptr<ModelInventory> inventory,
                                     std::span<const ApprovedModelDownload> files)
    : executor_(executor),
      inventory_(std::move(inventory)),
      files_(files),
      queue_(executor, "smart-models") {}

SmartModelManager::~SmartModelManager() {
  stopping_ = true;
}

const ApprovedModelDownload* SmartModelManager::find(std::string_view identifier) const {
  const auto found = std::ranges::find(files_, identifier, &ApprovedModelDownload::identifier);
  return found == files_.end() ? nullptr : &*found;
}

std::string SmartModelManager::identifierFor(std::string_view repository, std::string_view file) const {
  const auto found = std::ranges::find_if(
      files_, [&](const auto& entry) { return entry.repository == repository && entry.file == file; });
  return found == files_.end() ? std::string() : std::string(found->identifier);
}

ModelFileState SmartModelManager::state(std::string_view identifier) const {
  const auto found = states_.find(identifier);
  return found == states_.end() ? ModelFileState::missing : found->second;
}

bool SmartModelManager::isReady(std::string_view identifier) const {
  const auto* entry = find(identifier);
  return entry != nullptr && inventory_->look(*entry) == ModelInventory::Finding::verified;
}

std::filesystem::path SmartModelManager::file(std::string_view identifier) const {
  const auto* entry = find(identifier);
  return entry == nullptr ? std::filesystem::path() : inventory_->place(*entry);
}

std::filesystem::path SmartModelManager::sageFolder() const {
  const auto first = std::ranges::find_if(
      files_, [](const auto& entry) { return entry.identifier.starts_with(sagePrefix); });
  return first == files_.end() ? std::filesystem::path() : inventory_->place(*first).parent_path();
}

bool SmartModelManager::isSageReady() const {
  bool hasAny = false;
  for (const auto& entry : files_) {
    if (!entry.identifier.starts_with(sagePrefix)) continue;
    if (!isReady(entry.identifier)) return false;
    hasAny = true;
  }
  return hasAny;
}

void SmartModelManager::validate() {
  ++validation_;
  for (const auto& entry : files_) {
    switch (inventory_->look(entry)) {
      case ModelInventory::Finding::missing:
        set(entry.identifier, ModelFileState::missing);
        break;
      case ModelInventory::Finding::wrong:
        set(entry.identifier, ModelFileState::damaged);
        break;
      case ModelInventory::Finding::verified:
        set(entry.identifier, ModelFileState::ready);
        break;
      case ModelInventory::Finding::unknown:
        set(entry.identifier, ModelFileState::verifying);
        queue_.enqueue([this, &entry, validation = validation_, alive = std::weak_ptr(alive_)] {
          const bool isValid = inventory_->verify(entry, stopping_);
          executor_.post([this, &entry, isValid, validation, alive] {
            if (alive.expired() || validation != validation_) return;
            set(entry.identifier, isValid ? ModelFileState::ready : ModelFileState::damaged);
          });
        });
    }
  }
}

void SmartModelManager::set(std::string_view identifier, ModelFileState state) {
  const auto before = this->state(identifier);
  states_.insert_or_assign(identifier, state);
  if (before == state) return;
  // Posted, so that nobody is called back from inside `validate`.
  executor_.post([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) inventoryChanged_.emit();
  });
}

Registration SmartModelManager::onInventoryChange(std::function<void()> handler) {
  return inventoryChanged_.subscribe(std::move(handler));
}

}  // namespace murmel
