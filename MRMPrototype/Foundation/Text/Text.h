#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Unicode text in UTF-8. A "character" is an extended grapheme cluster (UAX #29), a "scalar" one code point.
/// Ill-formed input never fails: each maximal ill-formed piece reads as U+FFFD. Everything here is pure,
/// thread-safe and takes time in proportion to the text.
namespace murmel::text {

/// The characters of `text`, in order, as views into it.
[[nodiscard]] std::vector<std::string_view> characters(std::string_view text);
[[nodiscard]] std::size_t characterCount(std::string_view text);

/// The scalar that begins at `position`, which must lie inside `text`; moves `position` behind it.
[[nodiscard]] char32_t nextScalar(std::string_view text, std::size_t& position);
[[nodiscard]] std::vector<char32_t> scalars(std::string_view text);
void appendScalar(std::string& text, char32_t scalar);

[[nodiscard]] bool isValidUtf8(std::string_view text);
/// `text` with every ill-formed piece replaced by U+FFFD.
[[nodiscard]] std::string repairedUtf8(std::string_view text);

/// Properties of one character. It is white space or a letter when its first scalar is, punctuation when
/// every scalar of it is in one of the general categories P*, upper case when it is cased and mapping it to
/// upper case leaves it alike, lower case likewise (a title-case digraph is neither).
[[nodiscard]] bool isWhitespace(std::string_view character);
[[nodiscard]] bool isPunctuation(std::string_view character);
[[nodiscard]] bool isLetter(std::string_view character);
[[nodiscard]] bool isUppercase(std::string_view character);
[[nodiscard]] bool isLowercase(std::string_view character);

/// A letter (L*), a number (N*) or an underscore: what words are made of where matches must end at a word's
/// end.
[[nodiscard]] bool isWordScalar(char32_t scalar);

/// Without white space and line breaks at both ends; a view into `text`.
[[nodiscard]] std::string_view trimmed(std::string_view text);
[[nodiscard]] std::string_view trimmedEnd(std::string_view text);
/// The pieces between white-space characters, empty ones dropped; views into `text`. A mark that stands on a
/// space is part of that character and goes with it.
[[nodiscard]] std::vector<std::string_view> words(std::string_view text);

/// Upper- and lower-case form, full mapping, no locale ("ß" gives "SS").
[[nodiscard]] std::string uppercased(std::string_view text);
[[nodiscard]] std::string lowercased(std::string_view text);
/// Full case folding, no locale, then NFC: two texts are alike apart from case and from the way their accents
/// are encoded when these are equal.
[[nodiscard]] std::string caseFolded(std::string_view text);
/// Normalisation form C.
[[nodiscard]] std::string normalized(std::string_view text);
/// Whether two texts are the same to a reader: equal, or equal when both are normalised.
[[nodiscard]] bool areCanonicallyEqual(std::string_view left, std::string_view right);

}  // namespace murmel::text
