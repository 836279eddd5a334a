#include "CleanUp/FillerWordRemoval.h"

#include "Foundation/Text/RegularExpression.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace murmel {

namespace {

using text::RegularExpression;

constexpr auto fillers = std::to_array<std::string_view>({
    "как бы",
    "в общем",
    "короче",
    "типа",
    "значит",
    "ну",
    "ээ",
    "эм",
    "you know",
    "kind of",
    "sort of",
    "basically",
    "um",
    "uh",
});

RegularExpression compiled(std::string_view pattern) {
  return RegularExpression::compile(pattern).value();
}

void replaceAll(std::string& text, std::string_view what, std::string_view replacement) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + replacement.size()))
    text.replace(at, what.size(), replacement);
}

RegularExpression fillerPattern() {
  return compiled(R"((?i)(?<![\p{L}\p{N}_])(?:)" + FillerWordRemoval::alternatives() +
                  R"()(?![\p{L}\p{N}_]))");
}

/// Compiled once; immutable afterwards.
struct Patterns {
  RegularExpression filler = fillerPattern();
  RegularExpression spaces = compiled(R"(\s+)");
  RegularExpression spacesBeforePunctuation = compiled(R"(\s+([,.;:!?]))");
  RegularExpression punctuationAtStart = compiled(R"(^\s*[,.;:]\s*)");
  RegularExpression doubledCommas = compiled(R"(,\s*,)");
};

const Patterns& patterns() {
  static const Patterns patterns;
  return patterns;
}

}  // namespace

std::string FillerWordRemoval::alternatives() {
  std::vector<std::string_view> ordered(fillers.begin(), fillers.end());
  std::ranges::stable_sort(ordered, std::ranges::greater{}, text::characterCount);
  std::string alternatives;
  for (const auto filler : ordered) {
    auto escaped = RegularExpression::escaped(filler);
    replaceAll(escaped, "\\ ", "\\s+");
    if (!alternatives.empty()) alternatives += '|';
    alternatives += escaped;
  }
  return alternatives;
}

std::string FillerWordRemoval::apply(std::string_view text) {
  const auto& use = patterns();
  std::string result(text);
  // A step that meets its limit is left out: the words matter more than their tidiness.
  const auto replace = [&result](const RegularExpression& pattern, std::string_view replacement,
                                 RegularExpression::Replacement kind) {
    if (auto replaced = pattern.replacingMatches(result, replacement, kind)) result = *std::move(replaced);
  };
  using enum RegularExpression::Replacement;
  replace(use.filler, "", literal);
  replace(use.spaces, " ", literal);
  replace(use.spacesBeforePunctuation, "$1", withReferences);
  replace(use.punctuationAtStart, "", literal);
  replace(use.doubledCommas, ",", literal);
  return std::string(text::trimmed(result));
}

}  // namespace murmel
