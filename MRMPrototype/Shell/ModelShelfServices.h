#pragma once

#include "Foundation/Async/SerialQueue.h"
#include "Interface/Models/ModelShelf.h"
#include "Models/DownloadRate.h"
#include "Models/ModelCatalog.h"
#include "Settings/SettingsRepository.h"
#include "Shell/ModelServices.h"

#include <atomic>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace murmel {

/// The shelf of models that the windows show, over the models and the downloader of the application. Reading
/// and removing files happens on a queue. Main thread.
class ModelShelfServices final : public ModelShelf {
 public:
  /// The references outlive this. `unusable`: why this computer cannot run a model; empty when it can.
  /// `packaged`: the models that came with the application.
  ModelShelfServices(Executor& executor, const Clock& clock, ModelServices& models,
                     SettingsRepository& settings, std::function<std::string(const CatalogModel&)> unusable,
                     std::function<std::vector<ModelShelfRow>()> packaged);
  /// Ends a verification that runs.
  ~ModelShelfServices() override;

  [[nodiscard]] std::vector<ModelShelfRow> rows() const override;
  [[nodiscard]] Signal<>& changed() override { return changed_; }
  [[nodiscard]] bool isInstalled(SmartLocalModel model) const override {
    return models_.readiness(model) == true;
  }
  [[nodiscard]] std::string downloadsUnavailable() const override;

  void download(const std::string& name) override;
  void pause(const std::string& name) override;
  void verify(const std::string& name) override;
  void remove(const std::string& name) override;
  void choose(const std::string& name) override;

 private:
  [[nodiscard]] ModelShelfRow row(const CatalogModel& model) const;
  void showUse(const CatalogModel& model, ModelShelfRow& row) const;
  void addDownload(const CatalogModel& model, ModelShelfRow& row) const;
  [[nodiscard]] std::int64_t received(const CatalogModel& model) const;
  void downloadChanged(const std::string& identifier);
  void run(const CatalogModel& model, bool removing);

  Executor& executor_;
  const Clock& clock_;
  ModelServices& models_;
  SettingsRepository& settings_;
  const std::shared_ptr<ModelInventory> installed_;
  std::function<std::string(const CatalogModel&)> unusable_;
  std::function<std::vector<ModelShelfRow>()> packaged_;
  std::map<std::string_view, DownloadRate> rates_;
  std::set<std::string_view> working_;  ///< being verified or removed
  std::vector<Registration> observers_;
  Signal<> changed_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< weakly held by what was posted
  std::atomic<bool> stopping_ = false;
  SerialQueue queue_;  ///< last: stopped before what its job uses goes
};

}  // namespace murmel
