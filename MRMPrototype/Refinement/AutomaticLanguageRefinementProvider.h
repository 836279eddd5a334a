#pragma once

#include "Platform/LanguageRecognizer.h"
#include "Refinement/RefinementProvider.h"

#include <memory>
#include <string_view>

namespace murmel {

/// Sends each text to the refiner for its language. A text for which there is none, and one whose refiner
/// fails, comes back unchanged; Russian is never sent to the multilingual refiner.
///
/// The provider must outlive its tasks, and the recogniser the provider.
class AutomaticLanguageRefinementProvider final : public RefinementProvider {
 public:
  /// Each may be absent. English goes to the multilingual refiner when it has none of its own.
  struct Refiners {
    std::shared_ptr<RefinementProvider> russian;
    std::shared_ptr<RefinementProvider> english;
    std::shared_ptr<RefinementProvider> multilingual;
  };

  AutomaticLanguageRefinementProvider(Refiners refiners, const LanguageRecognizer& recognizer);

  [[nodiscard]] const std::string& providerID() const override { return providerID_; }
  Task<Result<SpokenText>> refine(SpokenText text) override;

 private:
  [[nodiscard]] RefinementProvider* refinerFor(std::string_view text) const;

  std::string providerID_ = "automatic-language-routing-v1";
  Refiners refiners_;
  const LanguageRecognizer& recognizer_;
};

}  // namespace murmel
