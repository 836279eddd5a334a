#include "Foundation/Crypto/Crypto.h"
#include "Foundation/Crypto/SecretBytes.h"
#include "Foundation/RawValue.h"
#include "Foundation/Uuid.h"
#include "Support/Testing.h"

namespace {

enum class Fruit { apple, pear };

std::span<const std::uint8_t> bytes(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

template <>
inline constexpr auto murmel::rawValueTable<Fruit> = std::to_array<murmel::RawValueRow<Fruit>>({
    {Fruit::apple, "red apple"},
    {Fruit::pear, "pear"},
});

static_assert(rawValue(Fruit::apple) == "red apple");
static_assert(fromRawValue<Fruit>("pear") == Fruit::pear);
static_assert(fromRawValue<Fruit>("Pear") == std::nullopt && fromRawValue<Fruit>("") == std::nullopt);
static_assert(allCases<Fruit>() == std::array{Fruit::apple, Fruit::pear});

TEST(Uuid, ReadsAndWritesTheCanonicalForm) {
  constexpr std::string_view text = "01234567-89AB-CDEF-0123-456789ABCDEF";
  EXPECT_EQ(Uuid::parse(text).value().text(), text);
  EXPECT_EQ(Uuid::parse("01234567-89ab-cdef-0123-456789abcdef"), Uuid::parse(text));
  EXPECT_EQ(Uuid().text(), "00000000-0000-0000-0000-000000000000");
  for (const std::string_view wrong :
       {"", "01234567-89AB-CDEF-0123-456789ABCDE", "01234567-89AB-CDEF-0123-456789ABCDEF0",
        "0123456789ABCDEF0123456789ABCDEF----", "01234567-89AB-CDEF-0123-456789ABCDEG",
        "{1234567-89AB-CDEF-0123-456789ABCDE}", "01234567-89AB-CDEF-0123+456789ABCDEF"})
    EXPECT_EQ(Uuid::parse(wrong), std::nullopt) << wrong;
}

TEST(Uuid, RandomOnesAreOfVersionFourAndDiffer) {
  std::set<Uuid> seen;
  for (int round = 0; round < 1'000; ++round) {
    const auto uuid = Uuid::random();
    const auto text = uuid.text();
    EXPECT_EQ(text[14], '4');
    EXPECT_NE(std::string_view("89AB").find(text[19]), std::string_view::npos) << text;
    EXPECT_TRUE(seen.insert(uuid).second);
  }
}

TEST(Crypto, Sha256AgreesWithPublishedVectors) {
  // FIPS 180-4 examples, and the empty message.
  struct Row {
    std::string message;
    std::string_view digest;
  };
  for (const auto& row : std::vector<Row>{
           {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
           {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
           {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
           {std::string(1'000'000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
       }) {
    EXPECT_EQ(crypto::hexadecimal(crypto::sha256(bytes(row.message))), row.digest);
    crypto::Sha256 inPieces;
    for (std::size_t begin = 0; begin < row.message.size(); begin += 63)
      inPieces.update(bytes(std::string_view(row.message).substr(begin, 63)));
    auto moved = std::move(inPieces);
    EXPECT_EQ(crypto::hexadecimal(moved.finish()), row.digest);
  }
}

TEST(Crypto, RandomBytesFillTheWholeSpan) {
  std::vector<std::uint8_t> first(64);
  std::vector<std::uint8_t> second(64);
  ASSERT_TRUE(crypto::fillRandom(first));
  ASSERT_TRUE(crypto::fillRandom(second));
  EXPECT_NE(first, second);
  EXPECT_NE(std::vector<std::uint8_t>(first.end() - 16, first.end()), std::vector<std::uint8_t>(16));
}

TEST(SecretBytes, CompareCopyAndMove) {
  SecretBytes secret(bytes("key material"));
  const auto copy = secret.copy();
  EXPECT_EQ(secret, copy);
  EXPECT_NE(secret, SecretBytes(bytes("key materiaL")));
  EXPECT_NE(secret, SecretBytes(bytes("key")));
  const auto moved = std::move(secret);
  EXPECT_TRUE(secret.empty());  // NOLINT(bugprone-use-after-move): the promise under test
  EXPECT_EQ(moved, copy);
  EXPECT_EQ(SecretBytes(), SecretBytes(std::span<const std::uint8_t>()));
}
