#include "Platform/Linux/LanguageRecognizer/CLD2LanguageRecognizer.h"

#include "Foundation/Text/Text.h"

#include <cstdio>  // compact_lang_det.h uses FILE without including it

#include <cld2/public/compact_lang_det.h>
#include <cld2/public/encodings.h>

namespace murmel {

namespace {

/// The library stops at the first byte that may not be interchanged: an ill-formed one, a control, a
/// noncharacter. They say nothing about the language, so spaces stand in for them.
std::string interchangeable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const auto scalar = text::nextScalar(text, position);
    const bool isControl = scalar < 0x20 || (scalar >= 0x7F && scalar < 0xA0);
    const bool isNoncharacter = (scalar & 0xFFFE) == 0xFFFE || (scalar >= 0xFDD0 && scalar <= 0xFDEF);
    if (isControl || isNoncharacter) {
      result += ' ';
    } else {
      text::appendScalar(result, scalar);
    }
  }
  return result;
}

}  // namespace

std::optional<std::string> CLD2LanguageRecognizer::dominantLanguage(std::string_view text) const {
  const auto input = interchangeable(text);
  const CLD2::CLDHints noHints{nullptr, nullptr, CLD2::UNKNOWN_ENCODING, CLD2::UNKNOWN_LANGUAGE};
  CLD2::Language languages[3];
  int percentages[3];
  double scores[3];
  int letterBytes = 0;
  bool isReliable = false;
  int validBytes = 0;
  // Dictations are short: the best guess is wanted where a web page's worth of evidence is missing.
  const auto language = CLD2::ExtDetectLanguageSummaryCheckUTF8(
      input.data(), static_cast<int>(input.size()), /*is_plain_text=*/true, &noHints,
      CLD2::kCLDFlagBestEffort, languages, percentages, scores, nullptr, &letterBytes, &isReliable,
      &validBytes);
  if (language == CLD2::UNKNOWN_LANGUAGE) return std::nullopt;
  return CLD2::LanguageCode(language);
}

}  // namespace murmel
