#include "Refinement/RefinementProviderFactory.h"

#include "Refinement/AutomaticLanguageRefinementProvider.h"
#include "Refinement/BoundedRefinementProvider.h"
#include "Refinement/DisabledRefinementProvider.h"

#include <utility>

namespace murmel {

std::unique_ptr<RefinementProvider> RefinementProviderFactory::makeRefinementProvider(Choice choice) const {
  if (!choice.smartFormatting) return std::make_unique<DisabledRefinementProvider>();
  auto bounded = std::make_unique<BoundedRefinementProvider>(
      models_.makeLanguageModelRefiner(choice.model, /*prewarmed=*/false));
  if (choice.routing == SmartRefinementRoutingMode::selectedMultilingualModel) return bounded;
  AutomaticLanguageRefinementProvider::Refiners refiners;
  refiners.russian = models_.russianRefiner();
  refiners.multilingual = std::move(bounded);
  return std::make_unique<AutomaticLanguageRefinementProvider>(std::move(refiners), recognizer_);
}

}  // namespace murmel
