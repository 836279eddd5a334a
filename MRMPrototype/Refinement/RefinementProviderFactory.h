#pragma once

#include "Platform/LanguageRecognizer.h"
#include "Refinement/ModelRefiners.h"
#include "Refinement/RefinementProvider.h"
#include "Refinement/SmartLocalModel.h"
#include "Refinement/SmartRefinementRoutingMode.h"

#include <memory>

namespace murmel {

/// Composes the refiner of one dictation from the settings of the moment. Both collaborators must outlive the
/// factory and what it makes. Main thread.
class RefinementProviderFactory {
 public:
  struct Choice {
    bool smartFormatting = false;
    SmartRefinementRoutingMode routing = SmartRefinementRoutingMode::automaticByLanguage;
    SmartLocalModel model = SmartLocalModel::gemma4E2B;
  };

  RefinementProviderFactory(ModelRefiners& models, const LanguageRecognizer& recognizer)
      : models_(models), recognizer_(recognizer) {}

  [[nodiscard]] std::unique_ptr<RefinementProvider> makeRefinementProvider(Choice choice) const;

 private:
  ModelRefiners& models_;
  const LanguageRecognizer& recognizer_;
};

}  // namespace murmel
