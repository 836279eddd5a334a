#pragma once

#include "Models/ModelManager.h"
#include "Models/SmartModelManager.h"
#include "Refinement/RefinementSource.h"
#include "Settings/SettingsRepository.h"

#include <algorithm>
#include <array>
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

/// What the languages in use need for formatting stays loaded while it is on, and nothing while it is off. A
/// model that has been verified only now is loaded now.
class RefinerWarmth {
 public:
  RefinerWarmth(SettingsRepository& settings, SmartModelManager& models, RefinementSource& refinement,
                std::function<void()> shutdown)
      : settings_(settings),
        refinement_(refinement),
        shutdown_(std::move(shutdown)),
        observer_(settings.didChange().subscribe([this](SettingsProperty property) { follow(property); })),
        inventory_(models.onInventoryChange([this] {
          if (settings_.smartFormatting()) refinement_.warmUp();
        })) {}

 private:
  void follow(SettingsProperty property) {
    using enum SettingsProperty;
    constexpr auto deciding = std::to_array({smartFormatting, smartLocalModel, smartRefinementRouting,
                                             languageMode, singleLanguage, selectedLanguages});
    if (std::ranges::find(deciding, property) == deciding.end()) return;
    if (settings_.smartFormatting()) {
      refinement_.warmUp();
    } else {
      shutdown_();
    }
  }

  SettingsRepository& settings_;
  RefinementSource& refinement_;
  std::function<void()> shutdown_;
  Registration observer_;
  Registration inventory_;
};

}  // namespace murmel
