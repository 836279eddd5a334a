#include "Foundation/Crypto/Ed25519.h"
#include "Support/Testing.h"

#include <charconv>

namespace {

template <std::size_t size>
std::array<std::uint8_t, size> bytes(std::string_view digits) {
  std::array<std::uint8_t, size> result{};
  for (std::size_t index = 0; index < size; ++index)
    std::from_chars(digits.data() + 2 * index, digits.data() + 2 * index + 2, result[index], 16);
  return result;
}

}  // namespace

// RFC 8032, section 7.1, test 2.
TEST(Ed25519, VerifiesThePublishedVectorAndNothingNearIt) {
  const auto key = bytes<32>("3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c");
  const auto signature = bytes<64>(
      "92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da"
      "085ac1e43e15996e458f3613d0f11d8c387b2eaeb4302aeeb00d291612bb0c00");
  const auto message = bytes<1>("72");
  EXPECT_TRUE(ed25519::verify(key, message, signature));

  const auto other = bytes<1>("73");
  EXPECT_FALSE(ed25519::verify(key, other, signature));
  EXPECT_FALSE(ed25519::verify(key, {}, signature));
  auto flipped = signature;
  flipped[63] ^= 1;
  EXPECT_FALSE(ed25519::verify(key, message, flipped));
  EXPECT_FALSE(ed25519::verify(ed25519::SigningKey::generate()->publicKey(), message, signature));
}

TEST(Ed25519, SignsWhatItsPublicKeyVerifies) {
  const auto key = ed25519::SigningKey::generate();
  ASSERT_TRUE(key.has_value());
  const auto message = bytes<4>("00ff1080");
  EXPECT_TRUE(ed25519::verify(key->publicKey(), message, key->sign(message)));
}
