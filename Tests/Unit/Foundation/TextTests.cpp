#include "Foundation/Text/Text.h"
#include "Support/Testing.h"

namespace {

using Pieces = std::vector<std::string_view>;

constexpr std::string_view combiningAcute = "\u0301";

}  // namespace

TEST(Text, SplitsIntoCharacters) {
  struct Row {
    const char* what;
    std::string_view text;
    Pieces characters;
  };
  for (const auto& row : std::vector<Row>{
           {"nothing", "", {}},
           {"a line break of two bytes", "a\r\nb", {"a", "\r\n", "b"}},
           {"two lone line breaks", "\n\n", {"\n", "\n"}},
           {"a mark on a plain letter", "xe\u0301y", {"x", "e\u0301", "y"}},
           {"a mark at the start", "\u0301x", {"\u0301", "x"}},
           {"й taken apart", "ма\u0438\u0306ка", {"м", "а", "\u0438\u0306", "к", "а"}},
           {"a family and a flag",
            "a👩‍👩‍👧b🇩🇪🇫🇷",
            {"a", "👩‍👩‍👧", "b", "🇩🇪", "🇫🇷"}},
           {"a skin tone", "👍🏽!", {"👍🏽", "!"}},
           {"Hangul syllables in parts", "\u1112\u1161\u11ABx", {"\u1112\u1161\u11AB", "x"}},
           {"right to left with points", "שָׁלוֹם", {"שָׁ", "ל", "וֹ", "ם"}},
           {"bytes that are not text", "a\xFF\xE2\x82z", {"a", "\xFF", "\xE2\x82", "z"}},
       }) {
    EXPECT_EQ(text::characters(row.text), row.characters) << row.what;
    EXPECT_EQ(text::characterCount(row.text), row.characters.size()) << row.what;
  }
}

TEST(Text, SplitsIntoWords) {
  struct Row {
    const char* what;
    std::string_view text;
    Pieces words;
  };
  for (const auto& row : std::vector<Row>{
           {"nothing", "", {}},
           {"only white space", " \t\r\n\u00A0\u3000", {}},
           {"white space of every kind",
            "a\tb\u2028c\u2009d\u00A0e\u0085f\v\fg",
            {"a", "b", "c", "d", "e", "f", "g"}},
           {"a zero-width space is none", "a\u200Bb", {"a\u200Bb"}},
           {"a mark on a space goes with the space", "a \u0301b", {"a", "b"}},
           {"a mark after a line break stays", "a\n\u0301b", {"a", "\u0301b"}},
           {"a prefix sign takes the space into its character", "\u0600 1", {"\u0600 1"}},
           {"bytes that are not text", "\xFF \xC3", {"\xFF", "\xC3"}},
       }) {
    EXPECT_EQ(text::words(row.text), row.words) << row.what;
  }
}

TEST(Text, Trims) {
  EXPECT_EQ(text::trimmed("\r\n\u00A0 a b\u2029\t"), "a b");
  EXPECT_EQ(text::trimmed(" \n"), "");
  EXPECT_EQ(text::trimmed(" \xFF "), "\xFF");
  EXPECT_EQ(text::trimmedEnd(" a\u3000"), " a");
}

TEST(Text, KnowsCharactersOfSeveralScalars) {
  EXPECT_TRUE(text::isUppercase("E\u0301"));
  EXPECT_TRUE(text::isLowercase("e\u0301"));
  EXPECT_FALSE(text::isUppercase("ǅ")) << "title case is neither";
  EXPECT_FALSE(text::isLowercase("ǅ"));
  EXPECT_FALSE(text::isUppercase("字"));
  EXPECT_TRUE(text::isLetter("e\u0301"));
  EXPECT_FALSE(text::isLetter(combiningAcute));
  EXPECT_TRUE(text::isWhitespace("\r\n"));
  EXPECT_TRUE(text::isPunctuation("\u00AB"));
  EXPECT_FALSE(text::isPunctuation("!\u0301")) << "every scalar must be punctuation";
  for (const auto empty :
       {text::isWhitespace, text::isPunctuation, text::isLetter, text::isUppercase, text::isLowercase})
    EXPECT_FALSE(empty(""));
}

TEST(Text, MapsCase) {
  struct Row {
    std::string_view text, upper, lower, folded;
  };
  for (const auto& row : std::vector<Row>{
           {"Straße", "STRASSE", "straße", "strasse"},
           {"İi", "İI", "i\u0307i", "i\u0307i"},
           {"ΟΔΟΣ ς", "ΟΔΟΣ Σ", "οδος ς", "οδοσ σ"},
           {"Ёж ёлка", "ЁЖ ЁЛКА", "ёж ёлка", "ёж ёлка"},
           {"ﬁn", "FIN", "ﬁn", "fin"},
           {"a1_!", "A1_!", "a1_!", "a1_!"},
       }) {
    EXPECT_EQ(text::uppercased(row.text), row.upper);
    EXPECT_EQ(text::lowercased(row.text), row.lower);
    EXPECT_EQ(text::caseFolded(row.text), row.folded);
  }
}

TEST(Text, ComparesCanonically) {
  EXPECT_TRUE(text::areCanonicallyEqual("caf\u00E9", "cafe\u0301"));
  EXPECT_TRUE(text::areCanonicallyEqual("a\u0323\u0307", "a\u0307\u0323")) << "order of marks";
  EXPECT_FALSE(text::areCanonicallyEqual("\uFB01", "fi")) << "compatibility is not equality";
  EXPECT_FALSE(text::areCanonicallyEqual("cafe", "caf\u00E9")) << "diacritics count";
  EXPECT_EQ(text::caseFolded("\u0419"), text::caseFolded("\u0438\u0306"));
  // A letter under 100,000 alternating marks: sorting them took seconds.
  std::string marks = "a";
  while (marks.size() < 200'000) marks += "\u0301\u0316";
  EXPECT_EQ(text::caseFolded(marks).size(), marks.size() - 1) << "á with the rest";
  EXPECT_EQ(text::caseFolded("\u1FB3"), text::caseFolded("\u0391\u0345")) << "iota subscript";
}

TEST(Text, ReadsAndRepairsIllFormedBytes) {
  struct Row {
    const char* what;
    std::string_view bytes, repaired;
  };
  for (const auto& row : std::vector<Row>{
           {"a stray continuation", "a\x80", "a\uFFFD"},
           {"an overlong slash", "\xC0\xAF", "\uFFFD\uFFFD"},
           {"a surrogate", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
           {"beyond the last scalar", "\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
           {"cut off", "я\xF0\x9F\x98", "я\uFFFD"},
       }) {
    EXPECT_FALSE(text::isValidUtf8(row.bytes)) << row.what;
    EXPECT_EQ(text::repairedUtf8(row.bytes), row.repaired) << row.what;
    EXPECT_TRUE(text::isValidUtf8(row.repaired));
    // Nothing may throw or read outside.
    EXPECT_NO_THROW((void)text::caseFolded(row.bytes));
    EXPECT_NO_THROW((void)text::normalized(row.bytes));
    EXPECT_NO_THROW((void)text::uppercased(row.bytes));
  }
  const std::string_view zero("a\0b", 3);
  EXPECT_TRUE(text::isValidUtf8(zero));
  EXPECT_EQ(text::characterCount(zero), 3U);
  std::string appended;
  text::appendScalar(appended, 0xD800);
  EXPECT_EQ(appended, "\uFFFD");
}

TEST(Text, WorksOnSeveralThreads) {
  std::vector<std::jthread> threads;
  std::vector<std::size_t> counts(4);
  for (auto& count : counts) {
    threads.emplace_back([&count] {
      for (int round = 0; round < 50; ++round) count += text::characterCount("e\u0301👩‍👩‍👧");
    });
  }
  threads.clear();
  EXPECT_EQ(counts, std::vector<std::size_t>(4, 100));
}
