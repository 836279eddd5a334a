#include "Foundation/Crypto/Base64.h"
#include "Support/Testing.h"

#include <numeric>

namespace {

std::span<const std::uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

// The vectors of RFC 4648, section 10, and the two characters that its other alphabets exchange.
TEST(Base64, EncodesAndDecodesTheStandardVectors) {
  const std::vector<std::pair<std::string_view, std::string_view>> rows{
      {"", ""},
      {"f", "Zg=="},
      {"fo", "Zm8="},
      {"foo", "Zm9v"},
      {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="},
      {"foobar", "Zm9vYmFy"},
      {"\xfb\xff\xfe", "+//+"},
  };
  for (const auto& [plain, coded] : rows) {
    EXPECT_EQ(base64::encoded(bytesOf(plain)), coded);
    const auto back = base64::decoded(coded);
    ASSERT_TRUE(back.has_value()) << coded;
    EXPECT_EQ(std::string(back->begin(), back->end()), plain);
  }
}

TEST(Base64, AppendsAndRestoresEveryByteValueAtEveryPlace) {
  std::vector<std::uint8_t> bytes(3 * 256 + 1);
  for (std::size_t index = 0; index < bytes.size(); ++index)
    bytes[index] = static_cast<std::uint8_t>(index / 3 + index % 3);
  std::string text = "before:";
  base64::appendEncoded(text, bytes);
  ASSERT_EQ(text.size(), 7 + base64::encodedSize(bytes.size()));
  EXPECT_EQ(base64::decoded(std::string_view(text).substr(7)), bytes);
}

TEST(Base64, RefusesWhatTheEncoderDoesNotWrite) {
  for (const std::string_view text :
       {"A", "AA", "AAA", "AAAAA", "=", "====", "A===", "AA=A", "AAA=AAAA", "AA==AAAA", "AAAA====", "AA-_",
        "AA A", "AAA\n", "A\0AA", "AA\xc3\xa4", "AB==", "AAB="}) {
    EXPECT_EQ(base64::decoded(text), std::nullopt) << text;
  }
  EXPECT_EQ(base64::decoded(std::string_view("AAA\0", 4)), std::nullopt);
}
