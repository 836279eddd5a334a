#include "Refinement/ModelRefiners.h"

#include "Foundation/RawValue.h"

namespace murmel {

namespace {

class MissingModelRefinementProvider final : public RefinementProvider {
 public:
  explicit MissingModelRefinementProvider(SmartLocalModel model) : providerID_(rawValue(model)) {}

  [[nodiscard]] const std::string& providerID() const override { return providerID_; }

  Task<Result<std::string>> refine(std::string /*text*/) override {
    co_return std::unexpected(MRMError(MRMError::Case::smartModelMissing));
  }

 private:
  std::string providerID_;
};

}  // namespace

std::unique_ptr<RefinementProvider> MissingModelRefiners::makeLanguageModelRefiner(SmartLocalModel model,
                                                                                   bool /*prewarmed*/) {
  return std::make_unique<MissingModelRefinementProvider>(model);
}

}  // namespace murmel
