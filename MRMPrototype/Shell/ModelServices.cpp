#include "Shell/ModelServices.h"

#include "Models/ModelCatalog.h"
#include "Models/ModelStoreLayout.h"
#include "Models/SpeechModels.h"
#include "Platform/Linux/Files/MachineLock.h"
#include "Platform/Linux/Files/PosixFileSystem.h"

#include <string>

namespace murmel {

namespace {

class NoDownloads final : public ModelDownloadPriorityCoordinator {
 public:
  void notifyOptionalControls(bool) override {}
};

/// The catalogue has the recommended speech model first.
const CatalogModel& recommendedSpeechModel() {
  return modelCatalog().front();
}

}  // namespace

std::vector<std::string> proxies(const Environment& environment) {
  std::vector<std::string> variables;
  for (const char* name : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY", "no_proxy", "NO_PROXY"}) {
    if (const auto value = environment.value(name)) variables.push_back(std::string(name) + "=" + *value);
  }
  return variables;
}

std::filesystem::path modelStore(const ApplicationFolders& folders) {
  return folders.data / modelStoreFolder;
}

std::shared_ptr<ModelInventory> modelInventory(const Installation& installation) {
  return std::make_shared<ModelInventory>(modelStore(installation.folders), installation.folders.resources);
}

std::optional<ModelDownloadClient::Configuration> downloaderConfiguration(const Installation& installation) {
  if (!installation.downloaderServiceName) return std::nullopt;
  return ModelDownloadClient::Configuration{
      .executable = installation.folders.resources / "Workers" / ModelDownloadClient::workerName,
      .store = modelStore(installation.folders),
      .environment = proxies(installation.environment),
      .arguments = {},
      .mayExecute = [policy = installation.policy](
                        const std::filesystem::path& executable) { return policy.mayExecute(executable); },
      .lockStore =
          [](const std::filesystem::path& store) {
            (void)PosixFileSystem().makeFolders(store);
            return machineLock::takeWhereNeeded(store);
          },
  };
}

ModelServices::ModelServices(const ProcessServices& process, const Installation& installation)
    : inventory(modelInventory(installation)),
      speech(ModelManager::forStore(process.executor, inventory)),
      smart(process.executor, inventory),
      priority(std::make_unique<NoDownloads>()),
      canRunDownload_(canRun(speechEngine("parakeet"), installation.folders.resources)) {
  speech->validate();
  smart.validate();
  auto configuration = downloaderConfiguration(installation);
  if (!configuration) return;
  downloads =
      std::make_unique<ModelDownloadClient>(process.executor, process.launcher, *std::move(configuration));
  priority = std::make_unique<DownloadRuntimePriority>(*downloads);
  installed_ = downloads->onChange([this](const std::string&, const ModelDownloadStatus& status) {
    if (status.state != ModelDownloadStatus::State::installed) return;
    speech->validate();
    smart.validate();
  });
}

void ModelServices::follow(Executor& executor) {
  // A folder that is not there cannot be watched.
  (void)PosixFileSystem().makeFolders(inventory->store());
  watch_.emplace(executor, std::vector{inventory->store() / verificationMemoryName}, [this] {
    speech->validate();
    smart.validate();
  });
}

std::optional<bool> ModelServices::readiness(SmartLocalModel model) const {
  if (modelFile(model)) return true;
  const auto description = describe(model);
  const auto state = smart.state(smart.identifierFor(description.repository, description.file));
  return state == ModelFileState::verifying ? std::nullopt : std::optional(false);
}

std::optional<std::filesystem::path> ModelServices::modelFile(SmartLocalModel model) const {
  const auto description = describe(model);
  const auto identifier = smart.identifierFor(description.repository, description.file);
  if (!smart.isReady(identifier)) return std::nullopt;
  return smart.file(identifier);
}

std::optional<std::filesystem::path> ModelServices::russianModelDirectory() const {
  if (!smart.isSageReady()) return std::nullopt;
  return smart.sageFolder();
}

bool ModelServices::downloadSpeechModel() {
  if (!downloads || !canRunDownload_) return false;
  downloads->download(recommendedSpeechModel().identifiers, MRMModelDownloadImportance::required);
  return true;
}

void ModelServices::cancelSpeechModelDownload() {
  if (downloads) downloads->cancel(recommendedSpeechModel().identifiers);
}

}  // namespace murmel
