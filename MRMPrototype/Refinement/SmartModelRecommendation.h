#pragma once

#include "Recognition/DictationLanguage.h"

#include <span>
#include <string>

namespace murmel {

/// The advice that the settings show on which refinement model suits the dictation languages.
struct SmartModelRecommendation {
  std::string title;
  std::string detail;

  /// The profile's languages are all of them, the selected ones, or the single one, by the mode.
  static SmartModelRecommendation forProfile(DictationLanguageMode mode, DictationLanguage singleLanguage,
                                             std::span<const DictationLanguage> selectedLanguages);

  friend bool operator==(const SmartModelRecommendation&, const SmartModelRecommendation&) = default;
};

}  // namespace murmel
