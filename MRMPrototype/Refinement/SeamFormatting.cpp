#include "Refinement/SeamFormatting.h"

#include "Foundation/Text/Text.h"
#include "Refinement/ConservativeFormattingProjection.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace murmel {

namespace {

using Token = ConservativeFormattingProjection::Token;
using Words = std::vector<std::string_view>;

/// Whether every character of `marks` is one of `allowed`.
bool consistsOf(std::string_view marks, std::span<const std::string_view> allowed) {
  return std::ranges::all_of(text::characters(marks),
                             [&](auto mark) { return std::ranges::find(allowed, mark) != allowed.end(); });
}

constexpr auto stops = std::to_array<std::string_view>({".", "…", ","});
constexpr auto pauses = std::to_array<std::string_view>({",", ";", ":", "–", "—", "-"});

std::string withFirst(std::string_view word, std::string (*changed)(std::string_view)) {
  const auto first = text::characters(word).front();
  return changed(first) + std::string(word.substr(first.size()));
}

/// A capital that may be there only because a sentence begins: not that of "I", nor of "NATO".
bool mayBeLowered(std::string_view core) {
  const auto characters = text::characters(core);
  if (characters.empty() || !text::isUppercase(characters.front())) return false;
  const bool isEnglishI =
      characters.front() == "I" && (characters.size() == 1 || characters[1] == "'" || characters[1] == "’");
  return !isEnglishI && std::none_of(characters.begin() + 1, characters.end(), &text::isUppercase);
}

struct Seam {
  Words left;   ///< up to half of what is asked
  Words right;  ///< likewise
  Token last;   ///< of the left side
  Token first;  ///< of the right side
};

std::optional<Seam> seamOf(std::string_view left, std::string_view right) {
  auto leftWords = text::words(left);
  auto rightWords = text::words(right);
  if (leftWords.empty() || rightWords.empty()) return std::nullopt;
  constexpr auto half = SeamFormatting::mostWords / 2;
  if (leftWords.size() > half) leftWords.erase(leftWords.begin(), leftWords.end() - half);
  if (rightWords.size() > half) rightWords.resize(half);
  Seam seam{leftWords, rightWords, Token(leftWords.back()), Token(rightWords.front())};
  const bool isWord = std::ranges::any_of(text::characters(seam.last.core), &text::isLetter);
  // "3." and "e.g." need their points.
  const bool needsPoint = seam.last.core.find_first_of(".0123456789") != std::string_view::npos;
  if (!isWord || needsPoint || !consistsOf(seam.last.trailing, stops)) return std::nullopt;
  const bool isOpen = seam.last.trailing.empty() || seam.last.trailing == ",";
  if (!seam.first.leading.empty() || (isOpen && !mayBeLowered(seam.first.core))) return std::nullopt;
  return seam;
}

std::string join(const Words& words, std::size_t first, std::size_t end) {
  std::string text;
  for (auto word = first; word < end; ++word) text.append(text.empty() ? "" : " ").append(words[word]);
  return text;
}

}  // namespace

std::optional<std::string> SeamFormatting::question(std::string_view left, std::string_view right) {
  const auto seam = seamOf(left, right);
  if (!seam) return std::nullopt;
  auto words = join(seam->left, 0, seam->left.size() - 1);
  if (!words.empty()) words += ' ';
  words.append(seam->last.leading).append(seam->last.core).append(" ");
  const auto& first = seam->right.front();
  words += mayBeLowered(seam->first.core) ? withFirst(first, &text::lowercased) : std::string(first);
  if (seam->right.size() > 1) words += ' ' + join(seam->right, 1, seam->right.size());
  // Without the marks of its ends, so that a refiner that has looked at it has something to say.
  const auto begin = Token(text::words(words).front());
  if (mayBeLowered(begin.core) && begin.leading.empty()) words = withFirst(words, &text::lowercased);
  while (words.ends_with('.') || words.ends_with('?') || words.ends_with('!')) words.pop_back();
  return words;
}

std::optional<SeamFormatting::Sides> SeamFormatting::applied(std::string_view left, std::string_view right,
                                                             std::string_view answer) {
  const auto seam = seamOf(left, right);
  const auto asked = question(left, right);
  const auto answered = text::words(answer);
  // A refiner that fails gives the question back.
  if (!seam || join(answered, 0, answered.size()) == *asked) return std::nullopt;
  if (answered.size() != seam->left.size() + seam->right.size()) return std::nullopt;
  const auto askedWords = text::words(*asked);
  const bool isSame = std::ranges::equal(
      answered, askedWords, [](auto said, auto word) { return Token(said).key == Token(word).key; });
  const Token last(answered[seam->left.size() - 1]);
  const Token first(answered[seam->left.size()]);
  if (!isSame || !first.leading.empty() || !consistsOf(last.trailing, pauses)) return std::nullopt;

  Sides sides{std::string(left), std::string(right)};
  // Both words lie inside the sides: their places are known.
  sides.left.replace(static_cast<std::size_t>(seam->last.trailing.data() - left.data()),
                     seam->last.trailing.size(), last.trailing);
  const auto firstLetter = text::characters(first.core).front();
  if (mayBeLowered(seam->first.core) && text::isLowercase(firstLetter)) {
    const auto place = static_cast<std::size_t>(seam->first.core.data() - right.data());
    const auto size = text::characters(seam->first.core).front().size();
    sides.right.replace(place, size, firstLetter);
  }
  if (sides.left == left && sides.right == right) return std::nullopt;
  return sides;
}

}  // namespace murmel
