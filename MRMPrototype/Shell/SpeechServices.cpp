#include "Shell/SpeechServices.h"

#include "Audio/AudioCaptureService.h"
#include "CleanUp/VocabularyHints.h"

namespace murmel {

namespace {

RefinerLocations refinerLocations(const Installation& installation) {
  return {
      .resourcesDirectory = installation.folders.resources,
      .temporaryDirectory = installation.folders.temporary,
      .edition = installation.edition,
      .languageModelServer = installation.environment.value(LanguageModelRuntime::environmentVariable),
      .onnxRuntime = installation.environment.value(SageNativeAssets::runtimeEnvironmentVariable),
  };
}

}  // namespace

SpeechServices::SpeechServices(const ProcessServices& process, const Installation& installation,
                               ModelServices& models, const DictationSettings& settings)
    : refiners({process.executor, process.clock, process.launcher, models}, installation.identifier,
               refinerLocations(installation), installation.policy),
      recognition({process.executor, process.clock, process.launcher,
                   [&settings] { return settings.recogniserIdleLimit(); }},
                  {installation.folders.resources, installation.identifier,
                   [&settings] { return vocabularyHints(settings.personalVocabulary()); }},
                  *models.speech, installation.policy,
                  speechModels(modelStore(installation.folders), installation.folders.resources)),
      refinement(settings, refiners, languages_),
      cleanUp(settings, languages_),
      sessions({process.executor, process.clock,
                Logger(process.log, installation.identifier, "incremental-stages"), &convertForRecognition}) {
  models.speech->setLanguage(settings.workerLanguageCode());
}

}  // namespace murmel
