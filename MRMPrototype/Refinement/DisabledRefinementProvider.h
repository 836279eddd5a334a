#pragma once

#include "Refinement/RefinementProvider.h"

namespace murmel {

/// Leaves every text as it is.
class DisabledRefinementProvider final : public RefinementProvider {
 public:
  [[nodiscard]] const std::string& providerID() const override { return providerID_; }
  Task<Result<std::string>> refine(std::string text) override;

 private:
  std::string providerID_ = "disabled";
};

}  // namespace murmel
