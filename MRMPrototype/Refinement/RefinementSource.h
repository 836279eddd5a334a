#pragma once

#include "Platform/LanguageRecognizer.h"
#include "Refinement/RefinementProvider.h"
#include "Refinement/SmartLocalModel.h"
#include "Refinement/SmartRefinementRoutingMode.h"

#include <functional>
#include <memory>
#include <string>

namespace murmel {

/// Gives each dictation the refiner that the settings of the moment ask for. Main thread.
class RefinementSource {
 public:
  virtual ~RefinementSource() = default;
  /// Never nothing: without smart formatting it is the refiner that changes nothing.
  virtual std::shared_ptr<RefinementProvider> makeRefinementProvider() = 0;
  /// Loads what the languages in use need ahead of the first dictation, and lets go what they do not.
  virtual void warmUp() = 0;
};

/// What the settings say about formatting.
struct RefinementChoice {
  bool smartFormatting = false;
  SmartRefinementRoutingMode routing = SmartRefinementRoutingMode::automaticByLanguage;
  SmartLocalModel model = SmartLocalModel::gemma4E2B;
  /// The languages that are spoken.
  bool russian = true;
  bool otherLanguages = true;

  [[nodiscard]] bool needsRussianRefiner() const;
  [[nodiscard]] bool needsLanguageModel() const;
};

/// The refiners that a choice is made of; `russian` may give nothing. Called at most once each.
struct ModelRefiners {
  std::function<std::unique_ptr<RefinementProvider>()> languageModel;
  std::function<std::shared_ptr<RefinementProvider>()> russian;
};

/// Composes the refiner of one dictation. The recogniser must outlive it.
std::shared_ptr<RefinementProvider> makeRefinementProvider(const RefinementChoice& choice,
                                                           const ModelRefiners& models,
                                                           const LanguageRecognizer& recognizer);

/// Leaves every text as it is.
class DisabledRefinementProvider final : public RefinementProvider {
 public:
  [[nodiscard]] const std::string& providerID() const override { return providerID_; }
  Task<Result<SpokenText>> refine(SpokenText text) override { co_return text; }

 private:
  std::string providerID_ = "disabled";
};

}  // namespace murmel
