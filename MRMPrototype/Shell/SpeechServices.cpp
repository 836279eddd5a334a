#include "Shell/SpeechServices.h"

#include "Audio/AudioCaptureService.h"
#include "Product/MRMAppIdentity.h"
#include "Shell/RuntimePolicy.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace murmel {

namespace {

std::optional<std::string> environmentVariable(const char* name) {
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody writes the environment
  if (value == nullptr) return std::nullopt;
  return value;
}

RefinerLocations refinerLocations(const ApplicationFolders& folders, const InformationDictionary& info) {
  return {
      .resourcesDirectory = folders.resources,
      .temporaryDirectory = folders.temporary,
      .edition = distributionEdition(info),
      .languageModelServer = environmentVariable(LanguageModelRuntime::environmentVariable),
      .onnxRuntime = environmentVariable(SageNativeAssets::runtimeEnvironmentVariable),
  };
}

}  // namespace

SpeechServices::SpeechServices(Executor& executor, const Clock& clock, LogSink& log,
                               ProcessLauncher& launcher, const ApplicationFolders& folders,
                               const InformationDictionary& info, ModelServices& models,
                               const DictationSettings& settings)
    : refiners({executor, clock, launcher, models}, MRMAppIdentity::applicationIdentifier(info),
               refinerLocations(folders, info), runtimePolicy(folders)),
      recognition({executor, clock, launcher},
                  {folders.resources, MRMAppIdentity::applicationIdentifier(info)}, *models.speech,
                  runtimePolicy(folders)),
      refinement(settings, refiners, languages_),
      cleanUp(settings),
      sessions({executor, clock,
                Logger(log, MRMAppIdentity::applicationIdentifier(info), "incremental-stages"),
                &AudioCaptureService::convertForRecognition}) {}

}  // namespace murmel
