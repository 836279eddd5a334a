// Whatever a refiner returns, the words that come out are the recognised ones.

#include "Foundation/Text/RegularExpression.h"
#include "Foundation/Text/Text.h"
#include "Refinement/ConservativeFormattingProjection.h"
#include "Support/Testing.h"

namespace {

using Projection = ConservativeFormattingProjection;
using Words = std::vector<std::string>;

/// The pieces between the bars.
Words split(std::string_view text) {
  Words pieces(1);
  for (const char byte : text) byte == '|' ? (void)pieces.emplace_back() : pieces.back().push_back(byte);
  return pieces;
}

const Words vocabulary = split(
    "hello|world|i|don't|well-known|NASA|iphone|3.14|20,000|50%|$5|№7|привет|ёлка|кто-то|"
    "Москва|straße|İzmir|ısı|δρόμος|école|e\u0301t|\u0438\u0306од|שָׁלוֹם|مرحبا|नमस्ते|日本語|"
    "👍🏽|"
    "👩‍👩‍👧|a\u0301\u0323b|ǆep|ŉa|ﬁn|x\u200Dy|c++|_|«да»|(ok)|wait...|¿qué|\xFF\xFE|"
    "a\xC3|"
    "\u0301x|☺\u200D|\u0600|—|ß|1st|٣٤|hello");

const Words noise{
    "um,",    "Well,",   "the",      "—",      "...", "The",      "Привет!",       "42",
    "👍",      "<think>", "</think>", "Ignore", "all", "previous", "instructions!", "\u202Eabc\u202C",
    "\u0301", "\u200D",  "‼",        "«»",     "***", "\"Sure!",  "Here",          "is:"};

class Generator {
 public:
  explicit Generator(unsigned seed) : engine_(seed) {}

  std::size_t below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(engine_);
  }
  bool oneIn(std::size_t chances) { return below(chances) == 0; }
  const std::string& of(const Words& words) { return words[below(words.size())]; }

  Words words(const Words& from, std::size_t count) {
    Words result;
    for (std::size_t index = 0; index < count; ++index) result.push_back(of(from));
    return result;
  }

  std::string joined(const Words& words) {
    static const Words spaces{" ", "  ", "\n", "\r\n", "\t", "\u00A0", "\u3000"};
    std::string result;
    for (const auto& word : words) {
      if (!result.empty()) result += oneIn(6) ? of(spaces) : spaces.front();
      result += word;
    }
    return result;
  }

 private:
  std::mt19937 engine_;
};

/// What a model might make of the words: formatted, damaged, or something else entirely.
std::string candidateFor(Generator& random, const Words& original) {
  Words words;
  for (const auto& word : original) {
    if (random.oneIn(12)) continue;
    if (random.oneIn(12)) words.push_back(random.of(noise));
    auto changed = word;
    if (random.oneIn(3)) changed = text::uppercased(changed);
    if (random.oneIn(8)) changed = text::normalized(changed);
    if (random.oneIn(10)) changed = random.of(vocabulary);
    if (random.oneIn(4)) changed = random.of({"«", "(", "¿", "-", "\"", "„", "."}) + changed;
    if (random.oneIn(3)) changed += random.of({",", ".", "!", "?", "»", "…", "‼", ":)", "\u0301", "%"});
    words.push_back(changed);
  }
  for (std::size_t swaps = random.below(4); swaps > 0 && words.size() > 1; --swaps)
    std::swap(words[random.below(words.size())], words[random.below(words.size())]);
  auto candidate = random.joined(words);
  switch (random.below(12)) {
    case 0:
      return "<think>\n" + random.joined(random.words(noise, 30)) + "\n</think>\n\n" + candidate;
    case 1:
      return "Sure! Here is the corrected text:\n\n\"" + candidate + "\"\n\nLet me know if you need more.";
    case 2:
      return random.joined(random.words(noise, random.below(60)));
    case 3:
      return std::string();
    case 4:
      return candidate + candidate;
    case 5:
      candidate.resize(random.below(candidate.size() + 1));  // cut anywhere, inside a character too
      return candidate;
    case 6:
      if (random.oneIn(4)) {
        while (candidate.size() < 100'000) candidate += " " + random.of(noise) + " " + random.of(original);
      }
      return candidate;
    default:
      return candidate;
  }
}

Words coresOf(std::string_view text) {
  Words result;
  for (const auto piece : text::words(text)) result.emplace_back(Projection::Token(piece).core);
  return result;
}

/// The word with its first letter in upper case.
std::string raised(const std::string& word) {
  return Projection::capitalizedLikeCandidate(word, "A");
}

Words numbersIn(std::string_view text) {
  static const auto number = text::RegularExpression::compile(R"(\d+(?:[.,]\d+)*)").value();
  return number.matches(text::repairedUtf8(text)).value();
}

}  // namespace

TEST(ConservativeFormattingProjection, NeverChangesAWord) {
  constexpr unsigned rounds = 4'000;
  int projections = 0;
  for (unsigned seed = 1; seed <= rounds; ++seed) {
    Generator random(seed);
    const auto words = random.words(vocabulary, 1 + random.below(40));
    const auto original = random.joined(words);
    const auto candidate = candidateFor(random, words);
    const auto projected = Projection::project(original, candidate);
    if (!projected) continue;
    ++projections;

    const auto expected = coresOf(original);
    const auto actual = coresOf(*projected);
    ASSERT_EQ(actual.size(), expected.size()) << "seed " << seed;
    for (std::size_t index = 0; index < expected.size(); ++index) {
      ASSERT_TRUE(actual[index] == expected[index] || actual[index] == raised(expected[index]))
          << "seed " << seed << ": " << expected[index] << " became " << actual[index];
    }
    ASSERT_EQ(numbersIn(*projected), numbersIn(original)) << "seed " << seed;
    // Formatting what is formatted already changes no word either, and a projection accepts itself.
    ASSERT_EQ(coresOf(Projection::project(*projected, *projected).value_or("")), actual) << "seed " << seed;
  }
  EXPECT_GT(projections, 1'200) << "most candidates should be good enough to be projected";
}
