#include "Refinement/SmartLocalModel.h"
#include "Refinement/SmartModelRecommendation.h"
#include "Support/Testing.h"

TEST(SmartLocalModel, ReadsTheStoredAndTheFullName) {
  EXPECT_EQ(rawValue(SmartLocalModel::gemma4E2B), "gemma4E2");
  EXPECT_EQ(smartLocalModelFromStored("gemma4E2"), SmartLocalModel::gemma4E2B);
  EXPECT_EQ(smartLocalModelFromStored("gemma4E2B"), SmartLocalModel::gemma4E2B);
  EXPECT_EQ(smartLocalModelFromStored("qwen17"), SmartLocalModel::qwen17);
  EXPECT_EQ(smartLocalModelFromStored("Qwen17"), std::nullopt);
}

TEST(SmartModelRecommendation, FollowsTheLanguageProfile) {
  using enum DictationLanguage;
  using enum DictationLanguageMode;
  struct Row {
    DictationLanguageMode mode;
    DictationLanguage single;
    std::vector<DictationLanguage> selected;
    std::string_view title;
  };
  constexpr std::string_view forRussian = "Recommended for Russian: SAGE 95M";
  constexpr std::string_view forMixed = "Recommended for mixed languages: Gemma 4 E2B Q4 · Recommended";
  constexpr std::string_view forOther = "Recommended model: Gemma 4 E2B Q4 · Recommended";
  for (const auto& row : std::vector<Row>{
           {automaticAll, russian, {russian}, forMixed},
           {selected, english, {russian}, forRussian},
           {selected, russian, {english}, forOther},
           {selected, russian, {english, russian}, forMixed},
           {selected, russian, {}, forOther},
           {single, russian, {english, german}, forRussian},
           {single, german, {russian}, forOther},
       }) {
    const auto recommendation = SmartModelRecommendation::forProfile(row.mode, row.single, row.selected);
    EXPECT_EQ(recommendation.title, row.title);
    EXPECT_FALSE(recommendation.detail.empty());
  }
}
