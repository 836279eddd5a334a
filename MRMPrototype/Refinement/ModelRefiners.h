#pragma once

#include "Refinement/RefinementProvider.h"
#include "Refinement/SmartLocalModel.h"

#include <memory>

namespace murmel {

/// The refiners that need a model process, as seen by those who choose between them. Main thread.
class ModelRefiners {
 public:
  virtual ~ModelRefiners() = default;

  /// The local language-model refiner. It is made even where its model is missing: then `refine` answers
  /// `MRMError::smartModelMissing`. `prewarmed` starts the model's server at once.
  [[nodiscard]] virtual std::unique_ptr<RefinementProvider> makeLanguageModelRefiner(SmartLocalModel model,
                                                                                     bool prewarmed) = 0;

  /// The one native Russian refiner of the application; null unless its files are installed and verified.
  [[nodiscard]] virtual std::shared_ptr<RefinementProvider> russianRefiner() = 0;
};

}  // namespace murmel
