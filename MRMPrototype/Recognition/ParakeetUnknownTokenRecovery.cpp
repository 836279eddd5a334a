#include "Recognition/ParakeetUnknownTokenRecovery.h"

#include "Foundation/Text/Text.h"

#include <cstddef>
#include <vector>

namespace murmel {

namespace {

constexpr std::string_view marker = "<unk>";
constexpr std::string_view capitalYo = "\u0401";
constexpr std::string_view smallYo = "\u0451";

bool isCyrillic(char32_t scalar) {
  return scalar >= 0x0400 && scalar <= 0x04FF;
}

bool isAsciiLetter(char32_t scalar) {
  return (scalar >= 'A' && scalar <= 'Z') || (scalar >= 'a' && scalar <= 'z');
}

/// The text between the markers; one piece more than there are markers.
std::vector<std::string_view> split(std::string_view text) {
  std::vector<std::string_view> pieces;
  std::size_t from = 0;
  for (auto found = text.find(marker); found != std::string_view::npos; found = text.find(marker, from)) {
    pieces.push_back(text.substr(from, found - from));
    from = found + marker.size();
  }
  pieces.push_back(text.substr(from));
  return pieces;
}

bool looksRussian(const std::vector<std::string_view>& pieces) {
  std::size_t cyrillic = 0;
  std::size_t latin = 0;
  for (const auto piece : pieces) {
    for (const char32_t scalar : text::scalars(piece)) {
      if (isCyrillic(scalar)) ++cyrillic;
      if (isAsciiLetter(scalar)) ++latin;
    }
  }
  return cyrillic >= 1 && cyrillic >= latin;
}

bool endsCyrillic(std::string_view piece) {
  const auto scalars = text::scalars(piece);
  return !scalars.empty() && isCyrillic(scalars.back());
}

bool beginsCyrillic(std::string_view piece) {
  const auto scalars = text::scalars(piece);
  return !scalars.empty() && isCyrillic(scalars.front());
}

bool isAtSentenceStart(std::string_view written) {
  const auto before = text::trimmedEnd(written);
  return before.empty() || before.ends_with('.') || before.ends_with('!') || before.ends_with('?');
}

/// Two or more spaces or tabs become one space; a single tab stays.
std::string withoutRunsOfBlanks(std::string_view text) {
  const auto isBlank = [](char byte) { return byte == ' ' || byte == '\t'; };
  std::string result;
  for (std::size_t position = 0; position < text.size();) {
    auto end = position;
    while (end < text.size() && isBlank(text[end])) ++end;
    if (end - position >= 2) {
      result += ' ';
      position = end;
    } else {
      result += text[position++];
    }
  }
  return result;
}

}  // namespace

std::string ParakeetUnknownTokenRecovery::apply(std::string_view text,
                                                const std::optional<std::string>& forcedLanguage) {
  const auto pieces = split(text);
  if (pieces.size() == 1) return std::string(text);
  const bool isRussian = forcedLanguage ? *forcedLanguage == "ru" : looksRussian(pieces);
  std::string written(pieces.front());
  for (std::size_t index = 1; index < pieces.size(); ++index) {
    const bool touchesCyrillic =
        !forcedLanguage && (endsCyrillic(pieces[index - 1]) || beginsCyrillic(pieces[index]));
    if (isRussian || touchesCyrillic) written += isAtSentenceStart(written) ? capitalYo : smallYo;
    written += pieces[index];
  }
  const auto collapsed = withoutRunsOfBlanks(written);
  return std::string(text::trimmed(collapsed));
}

}  // namespace murmel
