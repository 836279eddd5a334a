#include "Foundation/Crypto/AesGcm.h"
#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/JsonCursor.h"
#include "Foundation/SpokenText.h"
#include "History/HistoryCodec.h"
#include "Support/FileBytes.h"
#include "Support/Testing.h"

namespace {

SecretBytes secret(std::span<const std::uint8_t> bytes) {
  return SecretBytes(bytes);
}

std::vector<std::uint8_t> unhex(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t index = 0; index < text.size(); index += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(std::string(text.substr(index, 2)), nullptr, 16)));
  }
  return bytes;
}

std::string encoded(std::span<const HistoryEntry> entries) {
  return textOf(encodeHistory(entries).reveal());
}

}  // namespace

// Test case 15 of the original GCM submission (AES-256, four blocks, no additional data).
TEST(AesGcm, OpensThePublishedVector) {
  const auto key = unhex("feffe9928665731c6d6a8f9467308308feffe9928665731c6d6a8f9467308308");
  const auto plaintext = unhex(
      "d9313225f88406e5a55909c5aff5269a86a7a9531534f7da2e4c303d8a318a72"
      "1c3c0c95956809532fcf0e2449a6b525b16aedf5aa0de657ba637b391aafd255");
  auto box = unhex(
      "cafebabefacedbaddecaf888"
      "522dc1f099567d07f47f37a32a84427d643a8cdcbfe5c0c97598a2bd2555d1aa"
      "8cb08e48590dbb3da7b08b1056828838c5f61e6393ba7a0abcc9f662898015ad"
      "b094dac5d93471bdec1a502270e3cc6c");
  const auto opened = crypto::openAes256Gcm(secret(key), box);
  ASSERT_TRUE(opened);
  EXPECT_EQ(textOf(opened->reveal()), textOf(plaintext));
  box.back() ^= 1;
  EXPECT_FALSE(crypto::openAes256Gcm(secret(key), box));
  EXPECT_FALSE(crypto::openAes256Gcm(secret(key), std::span(box).first(27)));
}

TEST(AesGcm, SealsUnderAFreshNonceAndNeedsTheSameKey) {
  const SecretBytes key(crypto::aes256KeySize);
  const auto first = crypto::sealAes256Gcm(key, bytesOf("words"));
  const auto second = crypto::sealAes256Gcm(key, bytesOf("words"));
  ASSERT_TRUE(first && second);
  EXPECT_EQ(first->size(), 12U + 5 + 16);
  EXPECT_NE(*first, *second);
  EXPECT_EQ(textOf(crypto::openAes256Gcm(key, *first)->reveal()), "words");
  auto otherKey = key.copy();
  otherKey.reveal()[0] = 1;
  EXPECT_FALSE(crypto::openAes256Gcm(otherKey, *first));
  EXPECT_FALSE(crypto::sealAes256Gcm(SecretBytes(16), bytesOf("words")));
}

TEST(SpokenText, LeavesNothingBehindWhenItGoesOrMoves) {
  for (const std::string& words : {std::string("short"), std::string(200, 'w')}) {
    SpokenText text(words);
    const char* const memory = text.reveal().data();
    SpokenText moved(std::move(text));
    EXPECT_EQ(moved.reveal(), words);
    // A short text lay inside the object, which is still there to be looked at.
    if (words.size() < 16) {
      EXPECT_EQ(std::string(memory, words.size()), std::string(words.size(), '\0'));
    }
    SpokenText target(std::string(100, 'x'));
    target = moved;
    EXPECT_EQ(target, moved);
    target = std::move(moved);
    EXPECT_EQ(target.reveal(), words);
  }
}

TEST(JsonCursor, AcceptsExactlyWhatIsJson) {
  const auto isJson = [](std::string_view text) {
    JsonCursor cursor(text);
    return cursor.skip() && cursor.atEnd();
  };
  for (const auto* text :
       {"[]", " [ 1 , -2.5e+3 , \"a\\u00e9\\ud83d\\ude00\\n\" , {\"k\":null,\"\":[true,false]} ] ",
        "[0.1e1,0,-0,1E5]"})
    EXPECT_TRUE(isJson(text)) << text;
  for (const auto* text :
       {"",         "[1,]",       "[,1]",          "{\"a\":1,}",    "{\"a\" 1}",   "{a:1}",
        "[01]",     "[1.]",       "[.5]",          "[+1]",          "[1e]",        "[nul]",
        "[\"\n\"]", "[\"\\x\"]",  "[\"\\ud83d\"]", "[\"\\ude00\"]", "[\"\\u12\"]", "[\"open]",
        "[\"\\\"]", "[\"\xff\"]", "[1] x"})
    EXPECT_FALSE(isJson(text)) << text;
  EXPECT_TRUE(JsonCursor(std::string(60, '[') + std::string(60, ']')).skip());
  EXPECT_FALSE(JsonCursor(std::string(100'000, '[')).skip());
}

TEST(JsonCursor, ReadsValuesOfTheirKindOnly) {
  std::string text;
  EXPECT_TRUE(JsonCursor(R"("a\"\\\/\b\f\n\r\t\u00e9\u20ac\ud83d\ude00z")").string(text));
  EXPECT_EQ(text, "a\"\\/\b\f\n\r\té€😀z");
  double number = 0;
  EXPECT_TRUE(JsonCursor("12345678.125").number(number));
  EXPECT_EQ(number, 12345678.125);
  EXPECT_FALSE(JsonCursor("1e999").number(number));
  std::int64_t integer = 0;
  EXPECT_TRUE(JsonCursor("-9223372036854775808").integer(integer));
  EXPECT_EQ(integer, std::numeric_limits<std::int64_t>::min());
  for (const auto* wrong : {"9223372036854775808", "1.0", "1e2", "\"1\"", "true"}) {
    EXPECT_FALSE(JsonCursor(wrong).integer(integer)) << wrong;
  }
  EXPECT_FALSE(JsonCursor("1").string(text));
}

TEST(HistoryCodec, GivesBackEveryEntryUnchanged) {
  std::vector<HistoryEntry> entries;
  const std::string texts[] = {"", "plain", "quote \" slash \\ / line\nbreak\ttab \x01 \x7f",
                               "Grüße, Ёлка 😀 e\u0301", std::string("nul\0inside", 10)};
  const double dates[] = {0.0, -0.5, 0.1 + 0.2, 785'462'400.123'456'7, 1e300};
  for (std::size_t index = 0; index < std::size(texts); ++index) {
    HistoryEntry entry;
    entry.id = Uuid::random();
    entry.createdAt = dates[index];
    entry.text = SpokenText(texts[index]);
    entry.providerID = "provider-\"x\"";
    entry.language = "Русский";
    if (index % 2 == 0) entry.unrecognizedParts = static_cast<int>(index) - 1;
    entries.push_back(entry);
  }
  const auto bytes = encodeHistory(entries);
  EXPECT_EQ(decodeHistory(bytes.reveal()), entries);
  EXPECT_EQ(encoded({}), "[]");
}

TEST(HistoryCodec, WritesShortestDatesAndUpperCaseIdentifiers) {
  HistoryEntry entry;
  entry.id = *Uuid::parse("a0b1c2d3-e4f5-4678-9abc-def012345678");
  entry.createdAt = 785462400.1;
  entry.text = SpokenText("ill-formed \xff");
  const HistoryEntry entries[] = {entry};
  EXPECT_EQ(encoded(entries), R"([{"id":"A0B1C2D3-E4F5-4678-9ABC-DEF012345678","createdAt":785462400.1,)"
                              "\"text\":\"ill-formed \uFFFD\",\"providerID\":\"\",\"language\":\"\"}]");
}

TEST(HistoryCodec, ReadsOlderAndNewerDataAndNothingElse) {
  const std::string id = R"("id":"A0B1C2D3-E4F5-4678-9ABC-DEF012345678")";
  const std::string rest = R"("createdAt":1,"text":"t","providerID":"p","language":"l")";
  const auto read = [](const std::string& text) { return decodeHistory(bytesOf(text)); };
  const auto older = read("[{" + id + "," + rest + "}]");
  ASSERT_TRUE(older);
  EXPECT_FALSE(older->front().unrecognizedParts);
  EXPECT_FALSE(read("[{" + id + "," + rest + R"(,"unrecognizedParts":null}])")->front().unrecognizedParts);
  EXPECT_EQ(read("[{" + id + "," + rest + R"(,"unrecognizedParts":3,"later":{"a":[1]}}])")
                ->front()
                .unrecognizedParts,
            3);
  for (const auto& broken : {std::string(), std::string("{}"), std::string("null"), "[{" + rest + "}]",
                             "[{" + id + "," + rest + "}", "[{" + id + "," + rest + "}]]",
                             "[{\"id\":\"x\"," + rest + "}]", "[{" + id + R"(,"createdAt":"1","text":"t"}])",
                             "[{" + id + "," + rest + R"(,"unrecognizedParts":99999999999}])"}) {
    EXPECT_FALSE(read(broken)) << broken;
  }
}
