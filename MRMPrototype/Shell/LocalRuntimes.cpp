#include "Shell/LocalRuntimes.h"

#include "Models/ModelStoreLayout.h"
#include "Models/SpeechEngines.h"

#include <functional>

#include <fmt/core.h>

namespace murmel {

namespace {

/// llama-server is built for processors with AVX2.
constexpr int serverProcessorLevel = 3;

/// The command that brings the folder "Runtime".
std::string mendingCommand(const Installation& installation) {
  if (installation.edition == DistributionEdition::development) {
    const auto build = installation.folders.resources.parent_path().parent_path();
    return "scripts/fetch-runtime " + build.string();
  }
  return fmt::format("sudo apt install ./murmel-runtime_{}.{}_amd64.deb", installation.build.version,
                     installation.build.buildNumber);
}

std::string obstacle(const Installation& installation, std::string_view what,
                     const std::filesystem::path& file,
                     const std::function<bool(const std::filesystem::path&)>& mayExecute, bool reading) {
  std::error_code failure;
  if (!std::filesystem::is_regular_file(file, failure))
    return fmt::format("{} is not installed; “{}” brings it", what, mendingCommand(installation));
  if (reading && !mayExecute(file))
    return fmt::format("{} is not as its makers signed it; “{}” brings it again", what,
                       mendingCommand(installation));
  return {};
}

}  // namespace

RefinerLocations refinerLocations(const Installation& installation) {
  return {
      .resourcesDirectory = installation.folders.resources,
      .temporaryDirectory = installation.folders.temporary,
      .edition = installation.edition,
      .languageModelServer = installation.environment.value(LanguageModelRuntime::environmentVariable),
      .onnxRuntime = installation.environment.value(SageNativeAssets::runtimeEnvironmentVariable),
  };
}

LocalRuntimes LocalRuntimes::of(const Installation& installation, bool reading) {
  const auto locations = refinerLocations(installation);
  const auto server = locations.languageModelRuntime(installation.policy);
  LocalRuntimes found{obstacle(installation, "llama-server", server.executable, server.mayExecute, reading),
                      obstacle(installation, "the ONNX Runtime", locations.onnxRuntimeLibrary(),
                               locations.russianPolicy(installation.policy), reading)};
  if (found.languageModels.empty() && processorLevel() < serverProcessorLevel)
    found.languageModels = "llama-server needs a processor with AVX2";
  return found;
}

ModelMachine modelMachine(const Installation& installation) {
  auto runtimes = LocalRuntimes::of(installation);
  return {.memory = installedMemory(),
          .speechEngineLevel = engineModuleLevel(installation.folders.resources / workersFolder),
          .languageModelObstacle = std::move(runtimes.languageModels),
          .russianObstacle = std::move(runtimes.russian)};
}

}  // namespace murmel
