#pragma once

#include "Platform/LanguageRecognizer.h"

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Puts marks and line breaks where somebody has said their names: "hello comma world new line" becomes
/// "hello, world" and a line break. English, German, French, Spanish and Russian; no other text changes.
///
/// A recogniser that punctuates puts marks of its own round a command; they go with it, but for the end of a
/// sentence in front of a line break. The word "literal" (in the language's own form) in front of a command
/// makes words of it. Stateless; pure but for the recogniser.
struct SpokenCommands {
  /// `language` is the two-letter code that the dictation was forced to, if any. Otherwise the text's
  /// language decides; in a text that is too short to tell the commands of every language are heard.
  static std::string apply(std::string_view text, const std::optional<std::string>& language,
                           const LanguageRecognizer& recognizer);
};

}  // namespace murmel
