#pragma once

#include "Platform/LanguageRecognizer.h"

#include <cstddef>
#include <string_view>

namespace murmel {

/// Which refiner a text goes to.
enum class RefinementRoute { russian, english, multilingual, none };

/// Routes a text by its scripts, and by its dominant language where Cyrillic and Latin are mixed. Stateless;
/// pure but for the recogniser, which is asked about mixed texts only.
struct TextLanguageRouter {
  struct ScriptWordCounts {
    std::size_t cyrillic = 0;
    std::size_t latin = 0;
    friend bool operator==(const ScriptWordCounts&, const ScriptWordCounts&) = default;
  };

  static RefinementRoute classify(std::string_view text, const LanguageRecognizer& recognizer);

  /// Words that contain a Cyrillic scalar (U+0400 to U+052F), and words that contain a letter of ASCII. A
  /// word with both counts for both.
  static ScriptWordCounts scriptWordCounts(std::string_view text);
};

}  // namespace murmel
