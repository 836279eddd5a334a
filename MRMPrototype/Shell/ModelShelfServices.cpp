#include "Shell/ModelShelfServices.h"

#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Refinement/SmartLocalModel.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

using State = ModelDownloadStatus::State;

ModelShelfRow::State stateFor(ModelInventory::Finding finding) {
  switch (finding) {
    case ModelInventory::Finding::missing:
      return ModelShelfRow::State::absent;
    case ModelInventory::Finding::wrong:
      return ModelShelfRow::State::damaged;
    case ModelInventory::Finding::unknown:
      return ModelShelfRow::State::unverified;
    case ModelInventory::Finding::verified:
      return ModelShelfRow::State::installed;
  }
  std::unreachable();
}

/// The model of the settings that this entry of the catalogue is; nothing for the others.
std::optional<SmartLocalModel> choiceOf(const CatalogModel& model) {
  for (const auto choice : allCases<SmartLocalModel>()) {
    if (describe(choice).displayName == model.title) return choice;
  }
  return std::nullopt;
}

}  // namespace

ModelShelfServices::ModelShelfServices(Executor& executor, const Clock& clock, ModelServices& models,
                                       SettingsRepository& settings,
                                       std::function<std::string(const CatalogModel&)> unusable,
                                       std::function<std::vector<ModelShelfRow>()> packaged)
    : executor_(executor),
      clock_(clock),
      models_(models),
      settings_(settings),
      installed_(models.inventory),
      unusable_(std::move(unusable)),
      packaged_(std::move(packaged)),
      queue_(executor, "model-shelf") {
  observers_.push_back(models_.speech->onInventoryChange([this] { changed_.emit(); }));
  observers_.push_back(models_.smart.onInventoryChange([this] { changed_.emit(); }));
  observers_.push_back(settings_.didChange().subscribe([this](SettingsProperty property) {
    if (property == SettingsProperty::smartLocalModel || property == SettingsProperty::smartFormatting)
      changed_.emit();
  }));
  if (!models_.downloads) return;
  observers_.push_back(models_.downloads->onChange(
      [this](const std::string& identifier, const ModelDownloadStatus&) { downloadChanged(identifier); }));
}

ModelShelfServices::~ModelShelfServices() {
  stopping_ = true;
}

std::string ModelShelfServices::downloadsUnavailable() const {
  return models_.downloads ? std::string() : "This build cannot download models.";
}

std::vector<ModelShelfRow> ModelShelfServices::rows() const {
  auto rows = packaged_();
  const auto packaged = std::ssize(rows);
  for (const auto& model : modelCatalog()) {
    // What comes with the application needs no download.
    const bool isPackaged = std::ranges::any_of(rows.begin(), rows.begin() + packaged,
                                                [&](const auto& other) { return other.name == model.name; });
    auto downloadable = row(model);
    if (!isPackaged || downloadable.onDisk > 0) rows.push_back(std::move(downloadable));
  }
  return rows;
}

ModelShelfRow ModelShelfServices::row(const CatalogModel& model) const {
  ModelShelfRow row{.name = std::string(model.name), .title = std::string(model.title)};
  row.isSpeech = model.importance == MRMModelDownloadImportance::required;
  row.purpose = model.purpose;
  row.licence = model.licence;
  row.size = downloadSize(model);
  row.onDisk = installed_->bytes(model.identifiers);
  row.isPackaged = installed_->isPackaged(model.identifiers);
  row.unusable = unusable_(model);
  if (row.unusable.empty() && row.onDisk == 0) row.unusable = whyNotDownloadable(model);
  row.state = working_.contains(model.name) ? ModelShelfRow::State::verifying
                                            : stateFor(installed_->look(model.identifiers));
  if (row.state == ModelShelfRow::State::absent || row.state == ModelShelfRow::State::damaged)
    addDownload(model, row);
  showUse(model, row);
  return row;
}

void ModelShelfServices::showUse(const CatalogModel& model, ModelShelfRow& row) const {
  if (row.state != ModelShelfRow::State::installed) return;
  if (row.isSpeech) {
    const auto* const file = MRMDownloadManifest::asset(model.identifiers.front());
    row.isInUse = file != nullptr && models_.speech->state() == SpeechModelState::ready &&
                  models_.speech->activeModelURL() == installed_->store() / file->folder;
  } else if (const auto choice = choiceOf(model)) {
    row.canBeChosen = true;
    row.isInUse = settings_.smartFormatting() && settings_.smartLocalModel() == *choice;
  }
}

void ModelShelfServices::addDownload(const CatalogModel& model, ModelShelfRow& row) const {
  if (!models_.downloads) return;
  bool isRunning = false;
  bool isWaiting = false;
  bool isStopped = false;
  std::int64_t total = 0;
  bool isTotalKnown = true;
  for (const auto& identifier : model.identifiers) {
    const auto status = models_.downloads->status(identifier);
    if (!status) return;
    if (status->state == State::failed) row.problem = status->message;
    isRunning |= status->state == State::downloading || status->state == State::checking ||
                 status->state == State::retrying;
    isWaiting |= status->state == State::waiting || status->state == State::suspended;
    isStopped |= status->state == State::cancelled;
    total += status->total.value_or(0);
    isTotalKnown &= status->total.has_value() || status->state == State::installed;
  }
  row.received = static_cast<std::uint64_t>(received(model));
  if (!row.size && isTotalKnown && total > 0) row.size = static_cast<std::uint64_t>(total);
  if (!row.problem.empty())
    row.state = ModelShelfRow::State::failed;
  else if (isStopped)
    row.state = ModelShelfRow::State::paused;
  else if (isRunning)
    row.state = ModelShelfRow::State::downloading;
  else if (isWaiting)
    row.state = ModelShelfRow::State::waiting;
  if (row.state != ModelShelfRow::State::downloading) return;
  const auto found = rates_.find(model.name);
  if (found == rates_.end()) return;
  row.bytesPerSecond = found->second.bytesPerSecond();
  if (row.size)
    row.remainingSeconds = found->second.remaining(static_cast<std::int64_t>(*row.size - row.received));
}

std::int64_t ModelShelfServices::received(const CatalogModel& model) const {
  std::int64_t sum = 0;
  for (const auto& identifier : model.identifiers) {
    if (const auto status = models_.downloads->status(identifier)) sum += status->received;
  }
  return sum;
}

void ModelShelfServices::downloadChanged(const std::string& identifier) {
  const auto model = std::ranges::find_if(modelCatalog(), [&](const CatalogModel& entry) {
    return std::ranges::find(entry.identifiers, identifier) != entry.identifiers.end();
  });
  if (model == modelCatalog().end()) return;
  rates_[model->name].add(clock_.now(), received(*model));
  changed_.emit();
}

void ModelShelfServices::download(const std::string& name) {
  const auto* const model = catalogModel(name);
  if (model == nullptr || !models_.downloads || !whyNotDownloadable(*model).empty()) return;
  models_.downloads->download(model->identifiers, model->importance);
  changed_.emit();
}

void ModelShelfServices::pause(const std::string& name) {
  const auto* const model = catalogModel(name);
  if (model == nullptr || !models_.downloads) return;
  models_.downloads->cancel(model->identifiers);
  changed_.emit();
}

void ModelShelfServices::verify(const std::string& name) {
  if (const auto* const model = catalogModel(name)) run(*model, false);
}

void ModelShelfServices::remove(const std::string& name) {
  const auto* const model = catalogModel(name);
  if (model == nullptr) return;
  if (models_.downloads) models_.downloads->discard(model->identifiers);
  run(*model, true);
}

void ModelShelfServices::choose(const std::string& name) {
  const auto* const model = catalogModel(name);
  const auto choice = model == nullptr ? std::nullopt : choiceOf(*model);
  if (!choice) return;
  settings_.setSmartLocalModel(*choice);
  settings_.setSmartFormatting(true);
}

void ModelShelfServices::run(const CatalogModel& model, bool removing) {
  if (!working_.insert(model.name).second) return;
  changed_.emit();
  const auto finished = [this, weak = std::weak_ptr(alive_), name = model.name] {
    if (weak.expired()) return;
    working_.erase(name);
    models_.speech->validate();
    models_.smart.validate();
    changed_.emit();
  };
  queue_.enqueue([this, installed = installed_, &model, removing, finished] {
    if (removing)
      static_cast<void>(
          installed->remove(model.identifiers));  // what stays is seen when it is looked at again
    else
      installed->verifyAgain(model.identifiers, stopping_);
    executor_.post(finished);
  });
}

}  // namespace murmel
