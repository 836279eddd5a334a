#pragma once

#include "Dictation/RefinementSource.h"
#include "Models/ModelManager.h"
#include "Settings/SettingsRepository.h"

#include <functional>

namespace murmel {

/// In a language that the best engine does not know, the next one that does is used.
class EngineForLanguage {
 public:
  EngineForLanguage(SettingsRepository& settings, ModelManager& models)
      : observer_(settings.didChange().subscribe([&settings, &models](SettingsProperty property) {
          if (property == SettingsProperty::languageMode || property == SettingsProperty::singleLanguage)
            models.setLanguage(settings.workerLanguageCode());
        })) {}

 private:
  Registration observer_;
};

/// The chosen refiner stays loaded while formatting is on, and none while it is off.
class RefinerWarmth {
 public:
  RefinerWarmth(SettingsRepository& settings, RefinementSource& refinement, std::function<void()> shutdown)
      : observer_(settings.didChange().subscribe(
            [&settings, &refinement, shutdown = std::move(shutdown)](SettingsProperty property) {
              if (property != SettingsProperty::smartFormatting &&
                  property != SettingsProperty::smartLocalModel) {
                return;
              }
              if (settings.smartFormatting()) {
                refinement.warmUp();
              } else {
                shutdown();
              }
            })) {}

 private:
  Registration observer_;
};

}  // namespace murmel
