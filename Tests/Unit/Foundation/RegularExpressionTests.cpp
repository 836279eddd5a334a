#include "Foundation/Text/RegularExpression.h"
#include "Support/Testing.h"

using namespace murmel::text;

namespace {

RegularExpression pattern(std::string_view text) {
  return RegularExpression::compile(text).value();
}

}  // namespace

TEST(RegularExpression, ReplacesLiterallyOrWithGroups) {
  const auto word = pattern(R"((?i)(?<![\p{L}\p{N}_])(straße)(?![\p{L}\p{N}_]))");
  EXPECT_EQ(word.replacingMatches("STRASSE, straße2 Straße", R"($1\)"), R"($1\, straße2 $1\)");
  EXPECT_EQ(word.replacingMatches("die Straße.", "<$1>", RegularExpression::Replacement::withReferences),
            "die <Straße>.");
  EXPECT_EQ(word.replacingMatches("", "x"), "");
  EXPECT_EQ(word.replacingMatches("\xFFno match", "x"), "\xFFno match") << "untouched without a match";
  EXPECT_EQ(pattern("🙂").replacingMatches("я🙂я", "é"), "яéя");
  EXPECT_EQ(pattern("x*").replacingMatches("ax", "-"), "-a--") << "empty matches move on";
}

TEST(RegularExpression, FindsMatchesInOrder) {
  EXPECT_EQ(pattern(R"(\d+(?:[.,]\d+)*)").matches("1,5 a 20.000,75. ٣"), (Strings{"1,5", "20.000,75", "٣"}));
  EXPECT_EQ(pattern("(?s)<a>.*?</a>").matches("<a>1\n</a><a>2</a>"), (Strings{"<a>1\n</a>", "<a>2</a>"}));
}

TEST(RegularExpression, RefusesWhatIsNoPattern) {
  for (const auto* invalid : {"(", "[a", "a{2", "(?<=a*)b", "\\", "*"}) {
    const auto compiled = RegularExpression::compile(invalid);
    ASSERT_FALSE(compiled) << invalid;
    EXPECT_EQ(compiled.error(), RegularExpressionError::invalidPattern);
  }
}

TEST(RegularExpression, EscapedLiteralsMatchThemselves) {
  std::string everyByte;
  for (char byte = 1; byte > 0 && byte < 0x7F; ++byte) everyByte += byte;
  for (const std::string& literal :
       {everyByte, std::string("a b"), std::string("\\Q.*\\E"), std::string("[[:alpha:]]"),
        std::string("C++ & «$»"), std::string("#\n")}) {
    EXPECT_EQ(pattern(RegularExpression::escaped(literal)).replacingMatches("-" + literal + "-", "x"), "-x-");
    EXPECT_EQ(pattern("(?x)" + RegularExpression::escaped(literal)).replacingMatches(literal, "x"), "x");
  }
}

TEST(RegularExpression, GivesUpOnRunawayMatching) {
  const std::string letters(3'000, 'a');
  for (const auto* runaway : {"(a+)+b", "(a|aa)+$b", "(?:a*)*b", "(.*)(.*)(.*)(.*)b"}) {
    const auto replaced = pattern(runaway).replacingMatches(letters, "");
    ASSERT_FALSE(replaced) << runaway;
    EXPECT_EQ(replaced.error(), RegularExpressionError::limitExceeded);
    EXPECT_FALSE(pattern(runaway).matches(letters));
  }
  std::string opened;
  for (int count = 0; count < 20'000; ++count) opened += "<think>";
  EXPECT_FALSE(pattern("(?s)<think>.*?</think>").matches(opened)) << "quadratic";
}

TEST(RegularExpression, LetsLinearPatternsThroughLongTexts) {
  std::string numbers;
  for (int count = 0; count < 100'000; ++count) numbers += "1,";
  numbers += "1";
  const auto found = pattern(R"(\d+(?:[.,]\d+)*)").matches(numbers);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->size(), 1U);
  const std::string spaces(1'000'000, ' ');
  EXPECT_EQ(pattern(R"(\s+)").replacingMatches(spaces, " "), " ");
}
