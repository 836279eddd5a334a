#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// For what programs say to each other: names, headers, words of a fixed alphabet. Text of people goes
/// through Text.h.
namespace murmel::text {

/// Lower case of A to Z; every other byte as it is.
constexpr char asciiLower(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

inline std::string asciiLowercased(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), asciiLower);
  return result;
}

constexpr bool equalsIgnoringAsciiCase(std::string_view one, std::string_view other) {
  return std::ranges::equal(one, other, {}, asciiLower, asciiLower);
}

/// Without these bytes at both ends; a view into `text`.
constexpr std::string_view asciiTrimmed(std::string_view text, std::string_view blanks = " \t\r\n") {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace murmel::text
