#include "Refinement/ConservativeFormattingProjection.h"

#include "Foundation/Text/Text.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace murmel {

namespace {

using Token = ConservativeFormattingProjection::Token;

/// Percent and per-mille signs are punctuation to Unicode, but they carry meaning: "50%" against "50." must
/// not lose its sign.
bool isPercentSign(std::string_view character) {
  constexpr std::string_view signs[] = {"%", "٪", "‰", "‱", "﹪", "％"};
  return std::ranges::find(signs, character) != std::end(signs);
}

bool isPunctuationAroundWords(std::string_view character) {
  return text::isPunctuation(character) && !isPercentSign(character);
}

bool isAsciiLetterOrDigit(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
}

std::vector<Token> tokens(std::string_view text) {
  std::vector<Token> result;
  for (const auto piece : text::words(text)) result.emplace_back(piece);
  return result;
}

/// Numbers for keys: equal keys have equal numbers.
class KeyNumbers {
 public:
  std::vector<std::uint32_t> of(std::span<const Token> tokens) {
    std::vector<std::uint32_t> result;
    result.reserve(tokens.size());
    for (const auto& token : tokens) {
      const auto next = static_cast<std::uint32_t>(numbers_.size());
      result.push_back(numbers_.try_emplace(token.key, next).first->second);
    }
    return result;
  }

 private:
  std::unordered_map<std::string_view, std::uint32_t> numbers_;
};

/// How many words the two texts have in common at most, whatever their order.
std::size_t commonWords(std::span<const Token> originals, std::span<const Token> candidates) {
  std::unordered_map<std::string_view, std::size_t> counts;
  for (const auto& token : originals) ++counts[token.key];
  std::size_t common = 0;
  for (const auto& token : candidates) {
    const auto found = counts.find(token.key);
    if (found == counts.end() || found->second == 0) continue;
    --found->second;
    ++common;
  }
  return common;
}

bool isEnough(std::size_t matches, std::size_t originals, std::size_t candidates) {
  return 2 * matches >= std::min(originals, candidates);
}

std::optional<std::string_view> firstLetter(std::string_view word) {
  for (const auto character : text::characters(word)) {
    if (text::isLetter(character)) return character;
  }
  return std::nullopt;
}

/// What two words are compared by. The two apostrophes are one: recognisers write ', language models ’.
std::string keyOf(std::string_view core) {
  constexpr std::string_view typographic = "’";
  auto key = text::caseFolded(core);
  for (auto at = key.find(typographic); at != std::string::npos; at = key.find(typographic, at + 1))
    key.replace(at, typographic.size(), "'");
  return key;
}

/// Whether `projected` reads as exactly these words. A mark or joiner at the edge of a word can melt into the
/// punctuation or the space that was put beside it.
bool readsAs(std::string_view projected, const std::vector<std::string>& cores) {
  const auto pieces = text::words(projected);
  return std::ranges::equal(pieces, cores, [](std::string_view piece, const std::string& core) {
    return Token(piece).core == core;
  });
}

}  // namespace

ConservativeFormattingProjection::Token::Token(std::string_view piece) : core(piece) {
  // Most words stand alone; no mark can make punctuation of a letter.
  if (!piece.empty() && isAsciiLetterOrDigit(piece.front()) && isAsciiLetterOrDigit(piece.back())) {
    key = keyOf(core);
    return;
  }
  const auto characters = text::characters(piece);
  const auto begin = std::ranges::find_if_not(characters, isPunctuationAroundWords);
  auto end = characters.end();
  while (end != begin && isPunctuationAroundWords(*(end - 1))) --end;
  std::size_t leadingSize = 0;
  for (auto character = characters.begin(); character != begin; ++character) leadingSize += character->size();
  std::size_t coreSize = 0;
  for (auto character = begin; character != end; ++character) coreSize += character->size();
  leading = piece.substr(0, leadingSize);
  core = piece.substr(leadingSize, coreSize);
  trailing = piece.substr(leadingSize + coreSize);
  key = keyOf(core);
}

std::vector<std::optional<std::size_t>> ConservativeFormattingProjection::alignment(
    std::span<const Token> originals, std::span<const Token> candidates) {
  enum class Step : std::uint8_t { diagonal, up, left };
  const std::size_t columns = candidates.size();
  KeyNumbers numbers;
  const auto rowKeys = numbers.of(originals);
  const auto columnKeys = numbers.of(candidates);

  // Only the last row of the distances is kept, and the step that the way back takes at each cell.
  std::vector<Step> steps(originals.size() * columns);
  std::vector<std::uint32_t> distances(columns + 1);
  for (std::size_t column = 0; column <= columns; ++column)
    distances[column] = static_cast<std::uint32_t>(column);
  for (std::size_t row = 0; row < originals.size(); ++row) {
    std::uint32_t diagonal = distances[0];
    distances[0] = static_cast<std::uint32_t>(row + 1);
    for (std::size_t column = 0; column < columns; ++column) {
      const std::uint32_t substituted = diagonal + (rowKeys[row] == columnKeys[column] ? 0 : 1);
      const std::uint32_t deleted = distances[column + 1] + 1;
      const std::uint32_t inserted = distances[column] + 1;
      const std::uint32_t best = std::min({substituted, deleted, inserted});
      steps[row * columns + column] = best == substituted ? Step::diagonal
                                      : best == deleted   ? Step::up
                                                          : Step::left;
      diagonal = distances[column + 1];
      distances[column + 1] = best;
    }
  }

  std::vector<std::optional<std::size_t>> result(originals.size());
  std::size_t row = originals.size();
  std::size_t column = columns;
  while (row > 0 && column > 0) {
    switch (steps[(row - 1) * columns + column - 1]) {
      case Step::diagonal:
        result[--row] = --column;
        break;
      case Step::up:
        --row;
        break;
      case Step::left:
        --column;
        break;
    }
  }
  return result;
}

std::string ConservativeFormattingProjection::capitalizedLikeCandidate(std::string_view word,
                                                                       std::string_view candidate) {
  const auto model = firstLetter(candidate);
  if (!model || !text::isUppercase(*model)) return std::string(word);
  const auto letter = firstLetter(word);
  if (!letter || !text::isLowercase(*letter)) return std::string(word);
  const auto position = static_cast<std::size_t>(letter->data() - word.data());
  std::string result(word);
  return result.replace(position, letter->size(), text::uppercased(*letter));
}

std::optional<std::string> ConservativeFormattingProjection::project(std::string_view original,
                                                                     std::string_view candidate) {
  if (candidate.size() > longestCandidate) return std::nullopt;
  const auto originals = tokens(original);
  const auto candidates = tokens(candidate);
  if (originals.empty() || candidates.empty()) return std::nullopt;
  // Cheap refusals first: a candidate may be a hundred kilobytes of something else.
  if (!isEnough(commonWords(originals, candidates), originals.size(), candidates.size())) return std::nullopt;
  if (candidates.size() > maximumTableCells / originals.size()) return std::nullopt;

  const auto aligned = alignment(originals, candidates);
  std::size_t matches = 0;
  for (std::size_t index = 0; index < originals.size(); ++index) {
    if (aligned[index] && candidates[*aligned[index]].key == originals[index].key) ++matches;
  }
  if (!isEnough(matches, originals.size(), candidates.size())) return std::nullopt;

  std::string projected;
  projected.reserve(original.size() + original.size() / 8);
  std::vector<std::string> cores;
  cores.reserve(originals.size());
  for (std::size_t index = 0; index < originals.size(); ++index) {
    const Token& recognized = originals[index];
    auto leading = recognized.leading;
    auto trailing = recognized.trailing;
    std::string core(recognized.core);
    if (aligned[index]) {
      const Token& formatted = candidates[*aligned[index]];
      if (!formatted.leading.empty()) leading = formatted.leading;
      if (!formatted.trailing.empty()) trailing = formatted.trailing;
      core = capitalizedLikeCandidate(recognized.core, formatted.core);
    }
    if (index > 0) projected += ' ';
    projected.append(leading).append(core).append(trailing);
    cores.push_back(std::move(core));
  }
  if (!readsAs(projected, cores)) return std::nullopt;
  return projected;
}

}  // namespace murmel
