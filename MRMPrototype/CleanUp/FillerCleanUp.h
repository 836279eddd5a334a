#pragma once

#include "Platform/LanguageRecognizer.h"

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Decides which parts of a text lose their fillers, and leaves no ruins behind. The list is Russian and
/// English: "um" is a word in German, an article in Portuguese, and a sentence in another language keeps all
/// of its words. Stateless; pure but for the recogniser.
struct FillerCleanUp {
  /// `language` is the two-letter code that the dictation was forced to, if any: then it alone decides.
  /// Otherwise each sentence does; one that is too short to tell goes with the whole text, unless that has
  /// other languages in it.
  static std::string apply(std::string_view text, const std::optional<std::string>& language,
                           const LanguageRecognizer& recognizer);

  /// Takes away what would be left of nothing but fillers: a sentence of them with its punctuation, a bracket
  /// with nothing else in it, a comma beside a filler that begins or ends a sentence. The first step of the
  /// removal.
  static std::string withoutRuins(std::string_view text);
};

}  // namespace murmel
