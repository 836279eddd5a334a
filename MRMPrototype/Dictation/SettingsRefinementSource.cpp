#include "Dictation/SettingsRefinementSource.h"

namespace murmel {

SettingsRefinementSource::SettingsRefinementSource(const DictationSettings& settings, ModelRefiners& models,
                                                   const LanguageRecognizer& recognizer)
    : settings_(settings), models_(models), factory_(models, recognizer) {}

std::shared_ptr<RefinementProvider> SettingsRefinementSource::makeRefinementProvider() {
  return factory_.makeRefinementProvider({.smartFormatting = settings_.smartFormatting(),
                                          .routing = settings_.smartRefinementRouting(),
                                          .model = settings_.smartLocalModel()});
}

void SettingsRefinementSource::warmUp() {
  // The refiner itself is not needed yet; making it starts the model's server, which stays.
  if (settings_.smartFormatting())
    models_.makeLanguageModelRefiner(settings_.smartLocalModel(), /*prewarmed=*/true);
}

}  // namespace murmel
