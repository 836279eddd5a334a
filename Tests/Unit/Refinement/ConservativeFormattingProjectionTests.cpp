#include "Refinement/ConservativeFormattingProjection.h"
#include "Refinement/FormattingSafetyGate.h"
#include "Support/Testing.h"

namespace {

using Projection = ConservativeFormattingProjection;

std::vector<Projection::Token> tokens(std::vector<std::string_view> pieces) {
  return {pieces.begin(), pieces.end()};
}

std::string repeated(std::string_view text, int count) {
  std::string result;
  for (int index = 0; index < count; ++index) result += text;
  return result;
}

}  // namespace

TEST(ConservativeFormattingProjection, CarriesPunctuationAndCapitalsOnly) {
  struct Row {
    const char* what;
    std::string_view original;
    std::string candidate;
    std::optional<std::string> projected;
  };
  for (const auto& row : std::vector<Row>{
           {"punctuation and capitals", "hello world how are you", "Hello, world! How are you?",
            "Hello, world! How are you?"},
           {"inserted words are dropped", "so it works fine", "Um, well, so it works fine.",
            "so it works fine."},
           {"a deleted word stays unformatted", "i really like tea", "I like tea.", "I really like tea."},
           {"a changed word keeps its spelling", "teh cat", "The cat.", "Teh cat."},
           {"nothing in common", "one two three", "uno dos tres", std::nullopt},
           {"half of the shorter text is enough", "a b c d", "A b x y.", "A b c d."},
           {"less than half is not", "a b c d e", "A b x y z.", std::nullopt},
           {"apostrophes of either kind", "c'est l'homme", "C’est l’homme.", "C'est l'homme."},
           {"an answer over 16 KiB", "hello", "Hello." + std::string(16'384, ' '), std::nullopt},
           {"an empty candidate", "hello", "", std::nullopt},
           {"a candidate of white space", "hello", " \n\u00A0", std::nullopt},
           {"nothing recognised", " ", "Hello", std::nullopt},
           {"guillemets", "слово", "«Слово»", "«Слово»"},
           {"low and high quotes", "er sagte komm", "Er sagte: „Komm!“", "Er sagte: „Komm!“"},
           {"inverted marks", "cómo estás", "¿Cómo estás?", "¿Cómo estás?"},
           {"line breaks collapse", "one\ntwo\r\n\tthree", "One two three", "One two three"},
           {"removed punctuation is kept", "well, (yes) no.", "Well yes no", "Well, (yes) no."},
           {"capitals are never lowered", "NASA and iPhone", "nasa and IPhone.", "NASA and IPhone."},
           {"only the first letter is raised", "iphone", "IPhone", "Iphone"},
           {"an apostrophe inside a word", "don't rock 'n' roll", "Don't rock ’n’ roll!",
            "Don't rock ’n’ roll!"},
           {"a hyphen inside a word", "well-known кто-то", "Well-known, Кто-то", "Well-known, Кто-то"},
           {"ё is not е", "ёлка стоит", "Елка стоит.", "Ёлка стоит."},
           {"ß raised has two letters", "straße und ßa", "STRASSE und ßA", "Straße und ßa"},
           {"ß and ss are the same word", "die straße", "Die Strasse.", "Die Straße."},
           {"final sigma is the same word", "ο δρόμος", "Ο ΔΡΌΜΟΣ;", "Ο Δρόμος;"},
           {"accents encoded in two ways", "cafe\u0301 bon", "Caf\u00E9, bon.", "Cafe\u0301, bon."},
           {"a decomposed first letter is raised", "e\u0301cole", "\u00C9cole", "E\u0301cole"},
           {"signs stay with their word", "it costs $5 or 50% off", "It costs $5 or 50. off!",
            "It costs $5 or 50%. off!"},
           {"a capital after digits", "1st place", "1St place", "1St place"},
           {"a title-case digraph is not lower case", "ǆep", "ǅep", "ǆep"},
           {"a mark on a space goes with the space", "a \u0301b", "A b", "A b"},
           {"punctuation alone", "so — yes", "So – yes.", "So – yes."},
           {"the right of two equal words", "the the cat", "The cat.", "the The cat."},
       }) {
    EXPECT_EQ(Projection::project(row.original, row.candidate), row.projected) << row.what;
  }
}

TEST(ConservativeFormattingProjection, TakesPiecesApart) {
  struct Row {
    std::string_view piece, leading, core, trailing;
  };
  for (const auto& row : std::vector<Row>{
           {"word", "", "word", ""},
           {"(«word»),", "(«", "word", "»),"},
           {"...", "...", "", ""},
           {"$5.00!", "", "$5.00", "!"},
           {"100%,", "", "100%", ","},
           {"don't", "", "don't", ""},
           {"-a-b-", "-", "a-b", "-"},
           {"_x_", "_", "x", "_"},
           {"!\u0301a", "", "!\u0301a", ""},
           {"👍🏽!", "", "👍🏽", "!"},
           {"", "", "", ""},
       }) {
    const Projection::Token token(row.piece);
    EXPECT_EQ(token.leading, row.leading) << row.piece;
    EXPECT_EQ(token.core, row.core) << row.piece;
    EXPECT_EQ(token.trailing, row.trailing) << row.piece;
  }
}

TEST(ConservativeFormattingProjection, AlignsWithTheStatedTieBreak) {
  using Alignment = std::vector<std::optional<std::size_t>>;
  const auto none = std::nullopt;
  struct Row {
    std::vector<std::string_view> originals, candidates;
    Alignment expected;
  };
  for (const auto& row : std::vector<Row>{
           {{"a", "b"}, {"A", "B"}, {0, 1}},
           {{"a", "b"}, {"x", "a", "b"}, {1, 2}},
           {{"a", "x", "b"}, {"a", "b"}, {0, none, 1}},
           {{"a", "a"}, {"a"}, {none, 0}},
           {{"a"}, {"a", "a"}, {1}},
           {{"a", "x"}, {"a", "a", "y"}, {1, 2}},
           {{"a", "b"}, {"c"}, {none, 0}},
           {{"a", "b", "c"}, {"c", "a", "b"}, {1, 2, none}},
           {{"a", "b", "a"}, {"b", "a", "b"}, {1, 2, none}},
           {{"a"}, {}, {none}},
       }) {
    EXPECT_EQ(Projection::alignment(tokens(row.originals), tokens(row.candidates)), row.expected);
  }
}

TEST(ConservativeFormattingProjection, RefusesWhatCannotBeComparedOrWouldMelt) {
  // Beyond the table's bound, although every word agrees.
  const auto huge = repeated("a ", 5'000);
  EXPECT_EQ(Projection::project(huge, huge), std::nullopt);
  EXPECT_TRUE(Projection::project(repeated("a ", 40), huge)) << "a long candidate alone is no reason";
  // A mark at the start of a line would end up on the space that takes the line break's place.
  EXPECT_EQ(Projection::project("a\n\u0301b", "A b"), std::nullopt);
  // A joiner at the end of a word would swallow the mark behind it.
  EXPECT_EQ(Projection::project("☺\u200D b", "☺‼ b"), std::nullopt);
}

TEST(FormattingSafetyGate, ComparesLengthWordsAndNumbers) {
  struct Row {
    const char* what;
    std::string_view recognized, projected;
    bool accepted;
  };
  const auto ten = std::string(10, 'a');
  for (const auto& row : std::vector<Row>{
           {"the same", "hello world", "Hello, world!", true},
           {"exactly 1.6 times as long", ten, "aaaaaaaaaa......", true},
           {"longer", ten, "aaaaaaaaaa.......", false},
           {"exactly 0.6 times as long", ten, "aaaaaa", true},
           {"shorter", ten, "aaaaa", false},
           {"characters, not bytes or scalars", "e\u0301e\u0301", "e\u0301e\u0301.", true},
           {"nothing against nothing is too short", "", "", false},
           {"another number of words", "a bcd", "abcd.", false},
           {"numbers in order", "2 of 10,5", "2 of 10,5.", true},
           {"numbers swapped", "2 of 10", "10 of 2", false},
           {"a number cut", "3.14 pi", "3 14pi", false},
           {"digits of another script", "٣ ab", "٤ ab", false},
       }) {
    EXPECT_EQ(FormattingSafetyGate::accepts(row.recognized, row.projected), row.accepted) << row.what;
  }
}
