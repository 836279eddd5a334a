#include "CleanUp/FillerCleanUp.h"

#include "CleanUp/FillerWordRemoval.h"
#include "Foundation/Text/RegularExpression.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace murmel {

namespace {

using text::RegularExpression;

enum class Verdict { ours, other, unsure };

bool hasOurFillers(std::string_view language) {
  return language == "en" || language == "ru";
}

/// About fewer words than these a recogniser only guesses.
constexpr std::size_t wordsToTellBy = 4;

/// Whether one of the words is there that hold English sentences together. A recogniser takes "Le train de
/// Lyon arrive en retard." for English, with confidence.
bool hasEnglishGlue(std::string_view text) {
  constexpr auto glue = std::to_array<std::string_view>(
      {"the",  "and",  "of",  "to",   "is",    "it",    "it's",   "you",   "that", "this",  "we",     "with",
       "for",  "i",    "i'm", "i'll", "my",    "are",   "be",     "have",  "has",  "not",   "don't",  "your",
       "they", "he",   "she", "what", "how",   "can",   "will",   "at",    "was",  "were",  "if",     "there",
       "do",   "does", "but", "our",  "their", "would", "should", "could", "from", "let's", "please", "by"});
  return std::ranges::any_of(text::words(text), [&](std::string_view word) {
    return std::ranges::find(glue, text::lowercased(word)) != glue.end();
  });
}

Verdict verdictOf(std::string_view text, const LanguageRecognizer& recognizer) {
  // By the other words: "basically" alone makes English of a French sentence.
  const auto words = FillerWordRemoval::apply(text);
  if (text::words(words).size() < wordsToTellBy) return Verdict::unsure;
  const auto language = recognizer.dominantLanguage(words);
  if (!language || (*language == "en" && !hasEnglishGlue(words))) return Verdict::unsure;
  return hasOurFillers(*language) ? Verdict::ours : Verdict::other;
}

/// The sentences of `text`, each with the white space behind it: an end is punctuation that white space
/// follows, or a line break.
std::vector<std::string_view> sentencesOf(std::string_view text) {
  std::vector<std::string_view> sentences;
  const auto characters = text::characters(text);
  const char* start = text.data();
  bool ends = false;
  bool insideSpace = false;
  for (const auto character : characters) {
    const bool space = text::isWhitespace(character);
    if (!space && insideSpace && ends) {
      sentences.emplace_back(start, static_cast<std::size_t>(character.data() - start));
      start = character.data();
      ends = false;
    }
    constexpr auto marks = std::to_array<std::string_view>({".", "!", "?", "…", "\n", "\r\n"});
    const bool mark = std::ranges::find(marks, character) != marks.end();
    if (mark) ends = true;
    if (!mark && !space) ends = false;
    insideSpace = space;
  }
  if (start != text.data() + text.size()) {
    sentences.emplace_back(start, static_cast<std::size_t>(text.data() + text.size() - start));
  }
  return sentences;
}

std::string removed(std::string_view text) {
  return FillerWordRemoval::apply(FillerCleanUp::withoutRuins(text));
}

/// One or more fillers in a row, with commas between them.
std::string fillersInARow() {
  const auto filler = "(?<![\\p{L}\\p{N}_])(?:" + FillerWordRemoval::alternatives() + ")(?![\\p{L}\\p{N}_])";
  return filler + "(?:\\s*,?\\s+" + filler + ")*";
}

RegularExpression anyCase(const std::string& pattern) {
  return RegularExpression::compile("(?i)" + pattern).value();
}

}  // namespace

std::string FillerCleanUp::withoutRuins(std::string_view text) {
  static const auto inBrackets = anyCase("[(\\[{]\\s*" + fillersInARow() + "\\s*[,.!?…]?\\s*[)\\]}]");
  static const auto asSentence =
      anyCase("(^\\s*|(?<=[.!?…])\\s+)" + fillersInARow() + "\\s*[.!?…]+(?=\\s|$)");
  static const auto atStart = anyCase("(?<=[.!?…])(\\s+)" + fillersInARow() + "\\s*,\\s+");
  static const auto atEnd = anyCase("[,;:]\\s*" + fillersInARow() + "\\s*([.!?…])");
  std::string result(text);
  const auto replace = [&result](const RegularExpression& pattern, std::string_view replacement) {
    // A step that meets its limit is left out: the words matter more than their tidiness.
    auto replaced =
        pattern.replacingMatches(result, replacement, RegularExpression::Replacement::withReferences);
    if (replaced) result = *std::move(replaced);
  };
  replace(inBrackets, "");
  replace(asSentence, "");
  replace(atStart, "$1");
  replace(atEnd, "$1");
  return result;
}

std::string FillerCleanUp::apply(std::string_view text, const std::optional<std::string>& language,
                                 const LanguageRecognizer& recognizer) {
  if (language) return hasOurFillers(*language) ? removed(text) : std::string(text);

  const auto sentences = sentencesOf(text);
  std::vector<Verdict> verdicts;
  verdicts.reserve(sentences.size());
  for (const auto sentence : sentences) verdicts.push_back(verdictOf(sentence, recognizer));
  const bool hasOther = std::ranges::find(verdicts, Verdict::other) != verdicts.end();
  if (!hasOther && verdictOf(text, recognizer) == Verdict::ours) return removed(text);

  // Neighbours of one fate stay together, so that what is tidied between them is.
  std::string result;
  for (std::size_t first = 0; first < sentences.size();) {
    std::size_t last = first;
    const bool ours = verdicts[first] == Verdict::ours;
    while (last + 1 < sentences.size() && (verdicts[last + 1] == Verdict::ours) == ours) ++last;
    const std::string_view run(sentences[first].begin(), sentences[last].end());
    if (ours) {
      result += removed(run);
      if (last + 1 < sentences.size()) result += ' ';
    } else {
      result += run;
    }
    first = last + 1;
  }
  return result;
}

}  // namespace murmel
