#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Tells which language most of a text is in. Quick enough for the main thread.
class LanguageRecognizer {
 public:
  virtual ~LanguageRecognizer() = default;
  /// A lower-case language code, two letters (ISO 639-1) wherever there is one. Nothing when the text has too
  /// few letters to say. Ill-formed UTF-8 never fails.
  [[nodiscard]] virtual std::optional<std::string> dominantLanguage(std::string_view text) const = 0;
};

}  // namespace murmel
