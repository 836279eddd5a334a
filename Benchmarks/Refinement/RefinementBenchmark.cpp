// What the clean-up of a transcript costs. Goals: all of it on 100 words under 1 ms; a vocabulary of 5,000
// entries on 2,000 words under 50 ms, projection of 40 words under 100 µs, routing of 2,000 words under 5 ms.

#include "CleanUp/CompiledVocabulary.h"
#include "CleanUp/FillerCleanUp.h"
#include "CleanUp/FillerWordRemoval.h"
#include "CleanUp/SpokenCommands.h"
#include "Foundation/Text/Text.h"
#include "Platform/Linux/LanguageRecognizer/CLD2LanguageRecognizer.h"
#include "Refinement/ConservativeFormattingProjection.h"
#include "Refinement/FormattingSafetyGate.h"
#include "Refinement/TextLanguageRouter.h"

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

using namespace murmel;

namespace {

constexpr int textWords = 2'000;
constexpr int entryCount = 5'000;

const std::vector<std::string> latinWords{"hello", "world",    "please", "open",
                                          "the",   "settings", "and",    "write"};
const std::vector<std::string> cyrillicWords{"привет",    "мир", "пожалуйста", "открой",
                                             "настройки", "и",   "ещё",        "раз"};

std::string sentence(const std::vector<std::string>& words, int count) {
  std::string text;
  for (int index = 0; index < count; ++index) {
    if (index > 0) text += ' ';
    text += words[static_cast<std::size_t>(index) % words.size()];
  }
  return text;
}

std::string numberedWords(int count) {
  std::string text;
  for (int index = 0; index < count; ++index) text += (index > 0 ? " term" : "term") + std::to_string(index);
  return text;
}

std::string numberedVocabulary(const std::string& term, const std::string& replacement) {
  std::string vocabulary;
  for (int index = 0; index < entryCount; ++index)
    vocabulary += term + std::to_string(index) + " = " + replacement + std::to_string(index) + "\n";
  return vocabulary;
}

void applyVocabulary(benchmark::State& state, const std::string& vocabulary, const std::string& text) {
  const CompiledVocabulary compiled(vocabulary);
  for (auto _ : state) benchmark::DoNotOptimize(compiled.apply(text));
}

/// Fillers, commands and a usual vocabulary, on a hundred words in sentences.
void wholeCleanUp(benchmark::State& state) {
  std::string text;
  for (int count = 0; count < 5; ++count)
    text +=
        "Um, we should, you know, talk about the plan for the week comma because it is basically ready "
        "period ";
  const CLD2LanguageRecognizer recognizer;
  const CompiledVocabulary vocabulary("postgresql = PostgreSQL\nthe plan = The Plan\nmurmel = Murmel");
  for (auto _ : state) {
    auto cleaned = FillerCleanUp::apply(text, std::nullopt, recognizer);
    cleaned = SpokenCommands::apply(cleaned, std::nullopt, recognizer);
    benchmark::DoNotOptimize(vocabulary.apply(cleaned));
  }
  state.counters["words"] = static_cast<double>(text::words(text).size());
}
BENCHMARK(wholeCleanUp)->Unit(benchmark::kMicrosecond);

void vocabularyWithoutMatches(benchmark::State& state) {
  applyVocabulary(state, numberedVocabulary("term", "Term "), sentence(latinWords, textWords));
}

/// Every word of the text is a term, and every replacement is longer than its term.
void vocabularyMatchingEveryWord(benchmark::State& state) {
  applyVocabulary(state, numberedVocabulary("term", "New Term "), numberedWords(textWords));
}

/// All entries are made of words that stand in the text, so that none can be ruled out beforehand.
void vocabularyOfCommonWords(benchmark::State& state) {
  std::string vocabulary;
  for (int index = 0; index < entryCount; ++index)
    vocabulary += sentence(latinWords, 2 + index % 5) + " world = x\n";
  applyVocabulary(state, vocabulary, sentence(latinWords, textWords));
}

/// Each entry changes what the one before it made of every word.
void vocabularyInChains(benchmark::State& state) {
  std::string vocabulary;
  for (int index = 0; index < entryCount; ++index)
    vocabulary += "t" + std::to_string(index) + " = t" + std::to_string(index + 1) + "\n";
  applyVocabulary(state, vocabulary, sentence({"t0", "and"}, textWords));
}

void compileVocabulary(benchmark::State& state) {
  const auto vocabulary = numberedVocabulary("term", "Term ");
  for (auto _ : state) benchmark::DoNotOptimize(CompiledVocabulary(vocabulary).entryCount());
}

void project(benchmark::State& state, const std::string& original) {
  const auto candidate = "«" + text::uppercased(original) + "».";
  for (auto _ : state)
    benchmark::DoNotOptimize(ConservativeFormattingProjection::project(original, candidate));
}

void projectFortyLatinWords(benchmark::State& state) {
  project(state, sentence(latinWords, 40));
}
void projectFortyCyrillicWords(benchmark::State& state) {
  project(state, sentence(cyrillicWords, 40));
}
void projectTwoThousandWords(benchmark::State& state) {
  project(state, sentence(cyrillicWords, textWords));
}

void projectForeignHundredKilobytes(benchmark::State& state) {
  const auto original = sentence(latinWords, 40);
  const auto candidate = numberedWords(12'000);
  for (auto _ : state)
    benchmark::DoNotOptimize(ConservativeFormattingProjection::project(original, candidate));
}

void safetyGate(benchmark::State& state) {
  const auto text = sentence(cyrillicWords, 38) + " 12 3,14";
  for (auto _ : state) benchmark::DoNotOptimize(FormattingSafetyGate::accepts(text, text));
}

void route(benchmark::State& state, const std::vector<std::string>& words) {
  const CLD2LanguageRecognizer recognizer;
  const auto text = sentence(words, textWords);
  for (auto _ : state) benchmark::DoNotOptimize(TextLanguageRouter::classify(text, recognizer));
}

void routeLatin(benchmark::State& state) {
  route(state, latinWords);
}
void routeMixed(benchmark::State& state) {
  auto words = latinWords;
  words.insert(words.end(), cyrillicWords.begin(), cyrillicWords.begin() + 4);
  route(state, words);
}

void removeFillers(benchmark::State& state) {
  const auto text = sentence(cyrillicWords, textWords / 2) + " um " + sentence(latinWords, textWords / 2);
  for (auto _ : state) benchmark::DoNotOptimize(FillerWordRemoval::apply(text));
}

void countCharacters(benchmark::State& state) {
  const auto text = sentence(cyrillicWords, textWords);
  for (auto _ : state) benchmark::DoNotOptimize(text::characterCount(text));
}

}  // namespace

BENCHMARK(vocabularyWithoutMatches)->Unit(benchmark::kMicrosecond);
BENCHMARK(vocabularyMatchingEveryWord)->Unit(benchmark::kMicrosecond);
BENCHMARK(vocabularyOfCommonWords)->Unit(benchmark::kMicrosecond);
BENCHMARK(vocabularyInChains)->Unit(benchmark::kMicrosecond);
BENCHMARK(compileVocabulary)->Unit(benchmark::kMicrosecond);
BENCHMARK(projectFortyLatinWords)->Unit(benchmark::kMicrosecond);
BENCHMARK(projectFortyCyrillicWords)->Unit(benchmark::kMicrosecond);
BENCHMARK(projectTwoThousandWords)->Unit(benchmark::kMicrosecond);
BENCHMARK(projectForeignHundredKilobytes)->Unit(benchmark::kMicrosecond);
BENCHMARK(safetyGate)->Unit(benchmark::kMicrosecond);
BENCHMARK(routeLatin)->Unit(benchmark::kMicrosecond);
BENCHMARK(routeMixed)->Unit(benchmark::kMicrosecond);
BENCHMARK(removeFillers)->Unit(benchmark::kMicrosecond);
BENCHMARK(countCharacters)->Unit(benchmark::kMicrosecond);
