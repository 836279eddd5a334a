#include "Refinement/SmartModelRecommendation.h"

#include "Refinement/SmartLocalModel.h"

#include <algorithm>

namespace murmel {

namespace {

std::string recommendedModel() {
  return std::string(describe(SmartLocalModel::gemma4E2B).displayName);
}

SmartModelRecommendation forRussian() {
  return {"Recommended for Russian: SAGE 95M",
          "A compact Russian-specific correction candidate. Conservative mode uses only its punctuation and "
          "capitalization while preserving the exact ASR words."};
}

SmartModelRecommendation forMixedLanguages() {
  return {"Recommended for mixed languages: " + recommendedModel(),
          "Use a multilingual model in Conservative mode. Murmel projects punctuation onto the original ASR "
          "words, so a model cannot remove or replace them."};
}

SmartModelRecommendation forAnotherLanguage() {
  return {"Recommended model: " + recommendedModel(),
          "No language-specific corrector has passed Murmel's benchmark for this profile yet. Conservative "
          "mode preserves the raw wording."};
}

}  // namespace

SmartModelRecommendation SmartModelRecommendation::forProfile(
    DictationLanguageMode mode, DictationLanguage singleLanguage,
    std::span<const DictationLanguage> selectedLanguages) {
  if (mode == DictationLanguageMode::automaticAll) return forMixedLanguages();
  const auto languages =
      mode == DictationLanguageMode::single ? std::span(&singleLanguage, 1) : selectedLanguages;
  if (languages.size() >= 2) return forMixedLanguages();
  const bool isRussian = std::ranges::equal(languages, std::array{DictationLanguage::russian});
  return isRussian ? forRussian() : forAnotherLanguage();
}

}  // namespace murmel
