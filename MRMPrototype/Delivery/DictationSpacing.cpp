#include "Delivery/DictationSpacing.h"

#include "Foundation/Text/Text.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace murmel {

namespace {

/// Scripts that are written without spaces: Thai to Myanmar, Khmer, and from the radicals of Han to the end
/// of the ideographs, without Hangul, which is written with spaces.
constexpr auto withoutSpaces = std::to_array<std::pair<char32_t, char32_t>>({
    {0x0E00, 0x0EFF},
    {0x1000, 0x109F},
    {0x1780, 0x17FF},
    {0x2E80, 0x312F},
    {0x31A0, 0xA4CF},
    {0xF900, 0xFAFF},
    {0xFF00, 0xFFEF},
    {0x20000, 0x3FFFF},
});

bool isWithoutSpaces(char32_t scalar) {
  return std::ranges::any_of(
      withoutSpaces, [&](const auto& range) { return scalar >= range.first && scalar <= range.second; });
}

bool takesSpaceBefore(std::string_view first) {
  constexpr std::string_view opening = "([{\"'“‘«¿¡„‚–—";
  if (text::isWhitespace(first)) return false;
  if (text::isPunctuation(first)) return opening.contains(first);
  std::size_t position = 0;
  return !isWithoutSpaces(text::nextScalar(first, position));
}

bool takesSpaceBehind(std::string_view last) {
  constexpr std::string_view opening = "([{“‘«¿¡„‚";
  std::size_t position = 0;
  return !text::isWhitespace(last) && !opening.contains(last) &&
         !isWithoutSpaces(text::nextScalar(last, position));
}

}  // namespace

SpokenText DictationSpacing::spaced(const SpokenText& text, std::uint32_t window) const {
  const auto& words = text.reveal();
  if (!isEnabled_ || words.empty() || !last_ || !last_->takesSpaceBehind || last_->window != window ||
      !userInput_ || userInput_() != last_->userInput || !takesSpaceBefore(text::characters(words).front()))
    return text;
  return SpokenText(" " + words);
}

void DictationSpacing::posted(const SpokenText& text, std::uint32_t window) {
  last_.reset();
  const auto userInput = isEnabled_ && userInput_ ? userInput_() : std::nullopt;
  if (!userInput || text.empty() || window == 0) return;
  last_.emplace(window, *userInput, takesSpaceBehind(text::characters(text.reveal()).back()));
}

}  // namespace murmel
