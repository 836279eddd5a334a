#include "Shell/SpeechServices.h"

#include "Audio/AudioCaptureService.h"
#include "CleanUp/PersonalVocabulary.h"
#include "Shell/LocalRuntimes.h"

#include <algorithm>

namespace murmel {

namespace {

RefinementChoice refinementChoice(const DictationSettings& settings) {
  const auto languages = settings.spokenLanguages();
  const auto isRussian = [](DictationLanguage language) { return language == DictationLanguage::russian; };
  return {
      .smartFormatting = settings.smartFormatting(),
      .routing = settings.smartRefinementRouting(),
      .model = settings.smartLocalModel(),
      .russian = languages.empty() || std::ranges::any_of(languages, isRussian),
      .otherLanguages = languages.empty() || !std::ranges::all_of(languages, isRussian),
  };
}

}  // namespace

SpeechServices::SpeechServices(const ProcessServices& process, const Installation& installation,
                               ModelServices& models, const DictationSettings& settings)
    : refiners({process.executor, process.clock, process.launcher, process.log, models, languages_},
               installation.identifier, refinerLocations(installation), installation.policy,
               [&settings] { return refinementChoice(settings); }),
      recognition({process.executor, process.clock, process.launcher,
                   [&settings] { return settings.recogniserIdleLimit(); }},
                  {installation.folders.resources, installation.identifier,
                   [&settings] { return vocabularyHints(settings.personalVocabulary()); }},
                  *models.speech, installation.policy,
                  speechModels(modelStore(installation.folders), installation.folders.resources)),
      cleanUp(settings, languages_),
      sessions({process.executor, process.clock,
                Logger(process.log, installation.identifier, "incremental-stages"), &convertForRecognition}) {
  models.speech->setLanguage(settings.workerLanguageCode());
}

}  // namespace murmel
