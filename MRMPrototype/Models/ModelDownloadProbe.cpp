#include "Models/ModelDownloadProbe.h"

#include "Foundation/Uuid.h"
#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Models/ModelInventory.h"

#include <utility>

namespace murmel {

namespace {

ModelDownloadClient::Configuration withStore(ModelDownloadClient::Configuration configuration,
                                             const std::filesystem::path& store) {
  configuration.store = store;
  return configuration;
}

}  // namespace

ModelDownloadProbe::ModelDownloadProbe(Executor& executor, ProcessLauncher& launcher,
                                       ModelDownloadClient::Configuration configuration,
                                       const std::filesystem::path& temporary)
    : executor_(executor),
      store_(temporary / ("mrm-download-probe-" + Uuid::random().text())),
      client_(std::in_place, executor, launcher, withStore(std::move(configuration), store_)) {}

ModelDownloadProbe::~ModelDownloadProbe() {
  changes_.reset();
  client_.reset();
  std::error_code error;
  std::filesystem::remove_all(store_, error);
}

void ModelDownloadProbe::run(std::function<void(Status, std::string)> done) {
  done_ = std::move(done);
  changes_ = client_->onChange([this](const auto&, const auto& status) { changed(status); });
  client_->download({std::string(identifier)}, MRMModelDownloadImportance::required);
}

void ModelDownloadProbe::changed(const ModelDownloadStatus& status) {
  if (!status.isOver()) return;
  if (status.state == ModelDownloadStatus::State::installed) {
    const std::atomic<bool> notStopping = false;
    const bool isRight = ModelInventory(store_).verify(std::vector{std::string(identifier)}, notStopping);
    return isRight ? finish(passed, "The model downloader works.")
                   : finish(failed, "The model downloader installed something else than it was asked for.");
  }
  const bool isAway = status.reason == "offline" || status.reason == "timed_out" ||
                      status.reason == "network" || status.reason == "server" ||
                      status.reason == "rate_limited";
  finish(isAway ? unreachable : failed, status.message);
}

void ModelDownloadProbe::finish(Status status, std::string line) {
  changes_.reset();
  // Posted, so that `done` may destroy this object.
  executor_.post([done = std::exchange(done_, nullptr), status, line = std::move(line)] {
    if (done) done(status, line);
  });
}

}  // namespace murmel
