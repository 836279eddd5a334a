#pragma once

#include "Dictation/RefinementSource.h"
#include "Refinement/RefinementProviderFactory.h"
#include "Settings/DictationSettings.h"

#include <memory>

namespace murmel {

/// Chooses the refiner by the settings of the moment.
class SettingsRefinementSource final : public RefinementSource {
 public:
  SettingsRefinementSource(const DictationSettings& settings, ModelRefiners& models,
                           const LanguageRecognizer& recognizer);

  std::shared_ptr<RefinementProvider> makeRefinementProvider() override;
  void warmUp() override;

 private:
  const DictationSettings& settings_;
  ModelRefiners& models_;
  RefinementProviderFactory factory_;
};

}  // namespace murmel
