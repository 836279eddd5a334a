#include "Foundation/Text/Text.h"
#include "Support/Testing.h"
#include "Workers/SageWorker/ByteLevelBPE.h"

using namespace murmel::worker;

namespace {

using Tokens = std::vector<std::int64_t>;

/// "Ġ" is the space, "Ċ" the line feed.
constexpr auto vocabulary =
    R"({"<pad>":0,"</s>":2,"a":3,"b":4,"c":5,"Ġ":6,"ab":7,"abc":8,"Ġab":9,"bc":10,"1":11,".":12,"Ċ":13,"'":14,"s":15,
        "'s":16,"cc":17})";
/// "b c" comes before "ab c": "abc" falls into "a" and "bc".
constexpr auto merges = "#version: 0.2\nb c\na b\nĠ ab\nab c\n' s\nc c\n";

ByteLevelBPE small() {
  return ByteLevelBPE::create(vocabulary, merges).value();
}

}  // namespace

TEST(ByteLevelBPE, MergesInTheOrderOfTheMerges) {
  const auto tokens = small();
  EXPECT_EQ(tokens.encode(""), Tokens{});
  EXPECT_EQ(tokens.encode("ab"), (Tokens{7}));
  EXPECT_EQ(tokens.encode("abc"), (Tokens{3, 10}));
  EXPECT_EQ(tokens.encode("abab"), (Tokens{7, 7}));
  EXPECT_EQ(tokens.encode("ccc"), (Tokens{17, 5})) << "from the left";
}

TEST(ByteLevelBPE, CutsWordsWithTheSpaceBeforeThem) {
  const auto tokens = small();
  EXPECT_EQ(tokens.encode("ab ab"), (Tokens{7, 9}));
  EXPECT_EQ(tokens.encode("ab  ab"), (Tokens{7, 6, 9})) << "the last space belongs to the word";
  EXPECT_EQ(tokens.encode("ab \n"), (Tokens{7, 6, 13}));
  EXPECT_EQ(tokens.encode("a1b.ab"), (Tokens{3, 11, 4, 12, 7})) << "letters, numbers and signs do not mix";
  EXPECT_EQ(tokens.encode("ab's"), (Tokens{7, 16}));
  EXPECT_EQ(tokens.encode("abz"), std::nullopt) << "not in the vocabulary";
}

TEST(ByteLevelBPE, WritesTheBytesOfTheTokens) {
  const auto tokens = small();
  EXPECT_EQ(tokens.decode(Tokens{0, 7, 9, 12, 13, 2}), "ab ab.\n") << "without those that steer the model";
  EXPECT_EQ(tokens.decode(Tokens{1, -1, 1'000}), "") << "there are no such tokens";
}

TEST(ByteLevelBPE, KeepsEveryByteOnTheWayThereAndBack) {
  // The usual table, in its usual order: what is visible first.
  std::string everyByte;
  int number = 0;
  for (char32_t scalar = 0x21; scalar < 0x144; ++scalar) {
    if ((scalar >= 0x7F && scalar <= 0xA0) || scalar == 0xAD) continue;
    std::string key;
    text::appendScalar(key, scalar);
    if (key == "\"" || key == "\\") key.insert(0, "\\");
    everyByte += (number == 0 ? "{\"" : ",\"") + key + "\":" + std::to_string(number);
    ++number;
  }
  ASSERT_EQ(number, 256);
  const auto tokens = ByteLevelBPE::create(everyByte + "}", "").value();
  for (const std::string text : {"Съешь же ещё\tэтих \x7F мягких\u00A0булок\u00AD!", "日本 👍🏽"}) {
    const auto encoded = tokens.encode(text);
    ASSERT_TRUE(encoded.has_value()) << text;
    EXPECT_EQ(encoded->size(), text.size());
    EXPECT_EQ(tokens.decode(*encoded), text);
  }
  EXPECT_EQ(tokens.decode(tokens.encode("a\xFFz").value()), "a\uFFFDz");
  EXPECT_EQ(tokens.decode(Tokens{tokens.encode("é")->front()}), "\uFFFD") << "half a character";
}

TEST(ByteLevelBPE, RefusesWhatItDoesNotUnderstand) {
  for (const char* bad : {"", "[]", "{}", R"({"a":-1})", R"({"a":"1"})", R"({"a":1.5})", R"({"a":1,"b":1})",
                          R"({"a":99999999999})", R"({"a":1)"}) {
    EXPECT_FALSE(ByteLevelBPE::create(bad, "").has_value()) << bad;
  }
  for (const char* bad : {"a", "a ", " a", "a b c"}) {
    EXPECT_FALSE(ByteLevelBPE::create(vocabulary, bad).has_value()) << bad;
  }
  EXPECT_TRUE(ByteLevelBPE::create(vocabulary, "a b\r\n\r\nb c").has_value());
}
