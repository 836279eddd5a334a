#pragma once

#include "Foundation/Async/Task.h"
#include "Foundation/SpokenText.h"
#include "Product/MRMError.h"

#include <string>

namespace murmel {

/// A refiner of punctuation and capitalisation; it never changes words. Main thread.
class RefinementProvider {
 public:
  virtual ~RefinementProvider() = default;
  [[nodiscard]] virtual const std::string& providerID() const = 0;
  /// Cancelled by destroying the task.
  virtual Task<Result<SpokenText>> refine(SpokenText text) = 0;
};

}  // namespace murmel
