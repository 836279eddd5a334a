#pragma once

#include "Refinement/RefinementProvider.h"

#include <memory>

namespace murmel {

/// Gives each dictation the refiner that the settings of the moment ask for. Main thread.
class RefinementSource {
 public:
  virtual ~RefinementSource() = default;
  /// Never nothing: without smart formatting it is the refiner that changes nothing.
  virtual std::shared_ptr<RefinementProvider> makeRefinementProvider() = 0;
  /// Loads the chosen language model ahead of the first dictation, if one is chosen.
  virtual void warmUp() = 0;
};

}  // namespace murmel
