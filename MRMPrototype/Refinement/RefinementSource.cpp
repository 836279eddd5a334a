#include "Refinement/RefinementSource.h"

#include "Refinement/AutomaticLanguageRefinementProvider.h"
#include "Refinement/BoundedRefinementProvider.h"

#include <utility>

namespace murmel {

bool RefinementChoice::needsRussianRefiner() const {
  return smartFormatting && russian && routing == SmartRefinementRoutingMode::automaticByLanguage;
}

bool RefinementChoice::needsLanguageModel() const {
  return smartFormatting &&
         (otherLanguages || routing == SmartRefinementRoutingMode::selectedMultilingualModel);
}

std::shared_ptr<RefinementProvider> makeRefinementProvider(const RefinementChoice& choice,
                                                           const ModelRefiners& models,
                                                           const LanguageRecognizer& recognizer) {
  if (!choice.smartFormatting) return std::make_shared<DisabledRefinementProvider>();
  auto bounded = std::make_shared<BoundedRefinementProvider>(models.languageModel());
  if (choice.routing == SmartRefinementRoutingMode::selectedMultilingualModel) return bounded;
  AutomaticLanguageRefinementProvider::Refiners refiners;
  refiners.russian = models.russian();
  refiners.multilingual = std::move(bounded);
  return std::make_shared<AutomaticLanguageRefinementProvider>(std::move(refiners), recognizer);
}

}  // namespace murmel
