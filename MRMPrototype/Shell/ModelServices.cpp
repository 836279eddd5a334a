#include "Shell/ModelServices.h"

#include "Models/ModelCatalog.h"
#include "Models/ModelStoreLayout.h"
#include "Models/SpeechModels.h"
#include "Product/MRMAppIdentity.h"
#include "Shell/RuntimePolicy.h"

#include <cstdlib>
#include <string>

namespace murmel {

namespace {

class NoDownloads final : public ModelDownloadPriorityCoordinator {
 public:
  void notifyOptionalControls(bool) override {}
};

/// The downloader gets an empty environment but for what leads it to the network.
std::vector<std::string> proxies() {
  std::vector<std::string> environment;
  for (const char* name : {"https_proxy", "HTTPS_PROXY", "no_proxy", "NO_PROXY"}) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody writes the environment
    if (const char* value = std::getenv(name)) environment.push_back(std::string(name) + "=" + value);
  }
  return environment;
}

/// The catalogue has the recommended speech model first.
const CatalogModel& recommendedSpeechModel() {
  return modelCatalog().front();
}

}  // namespace

std::filesystem::path modelStore(const ApplicationFolders& folders) {
  return folders.data / modelStoreFolder;
}

std::optional<ModelDownloadClient::Configuration> downloaderConfiguration(const ApplicationFolders& folders,
                                                                          const InformationDictionary& info) {
  if (!MRMAppIdentity::downloaderServiceName(info)) return std::nullopt;
  return ModelDownloadClient::Configuration{
      .executable = folders.resources / "Workers" / ModelDownloadClient::workerName,
      .store = modelStore(folders),
      .environment = proxies(),
      .arguments = {},
      .mayExecute = [policy = runtimePolicy(folders)](
                        const std::filesystem::path& executable) { return policy.mayExecute(executable); },
  };
}

ModelServices::ModelServices(Executor& executor, ProcessLauncher& launcher, const ApplicationFolders& folders,
                             const InformationDictionary& info)
    : speech(ModelManager::forStore(executor, modelStore(folders), folders.resources)),
      smart(executor, modelStore(folders), folders.resources),
      priority(std::make_unique<NoDownloads>()),
      canRunParakeet_(canRunParakeet(folders.resources)) {
  speech->validate();
  smart.validate();
  auto configuration = downloaderConfiguration(folders, info);
  if (!configuration) return;
  downloads = std::make_unique<ModelDownloadClient>(executor, launcher, *std::move(configuration));
  priority = std::make_unique<DownloadRuntimePriority>(*downloads);
  installed_ = downloads->onChange([this](const std::string&, const ModelDownloadStatus& status) {
    if (status.state != ModelDownloadStatus::State::installed) return;
    speech->validate();
    smart.validate();
  });
}

bool ModelServices::isReady(SmartLocalModel model) const {
  return modelFile(model).has_value();
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
  if (!downloads || !canRunParakeet_) return false;
  downloads->download(recommendedSpeechModel().identifiers, MRMModelDownloadImportance::required);
  return true;
}

void ModelServices::cancelSpeechModelDownload() {
  if (downloads) downloads->cancel(recommendedSpeechModel().identifiers);
}

}  // namespace murmel
