#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Unicode text in UTF-8. A "character" is an extended grapheme cluster (UAX #29), a "scalar" one code point.
/// Ill-formed input never fails: each maximal ill-formed piece reads as U+FFFD.
namespace murmel::text {

/// The characters of `text`, in order, as views into it.
[[nodiscard]] std::vector<std::string_view> characters(std::string_view text);
[[nodiscard]] std::size_t characterCount(std::string_view text);
[[nodiscard]] std::vector<char32_t> scalars(std::string_view text);
void appendScalar(std::string& text, char32_t scalar);
[[nodiscard]] bool isValidUtf8(std::string_view text);
/// `text` with every ill-formed piece replaced by U+FFFD.
[[nodiscard]] std::string repairedUtf8(std::string_view text);

/// Properties of one character. A character is white space, a letter, upper or lower case when its first
/// scalar is; it is punctuation when every scalar of it is in one of the general categories P*.
[[nodiscard]] bool isWhitespace(std::string_view character);
[[nodiscard]] bool isPunctuation(std::string_view character);
[[nodiscard]] bool isLetter(std::string_view character);
[[nodiscard]] bool isUppercase(std::string_view character);
[[nodiscard]] bool isLowercase(std::string_view character);

/// Without white space and line breaks at both ends; a view into `text`.
[[nodiscard]] std::string_view trimmed(std::string_view text);
[[nodiscard]] std::string_view trimmedEnd(std::string_view text);
/// The pieces between white space, empty ones dropped; views into `text`.
[[nodiscard]] std::vector<std::string_view> words(std::string_view text);

/// Upper-case form, full mapping, no locale ("ß" gives "SS").
[[nodiscard]] std::string uppercased(std::string_view text);
/// Full case folding, no locale, then NFC: two texts are alike apart from case when these are equal.
[[nodiscard]] std::string caseFolded(std::string_view text);
/// Normalisation form C.
[[nodiscard]] std::string normalized(std::string_view text);

}  // namespace murmel::text
