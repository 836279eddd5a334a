#include "Foundation/Uuid.h"

#include "Foundation/Crypto/Crypto.h"

#include <stdexcept>

namespace murmel {

namespace {

constexpr std::size_t canonicalLength = 36;

constexpr bool isDashPosition(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

constexpr int hexadecimalValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

}  // namespace

Uuid Uuid::random() {
  Uuid uuid;
  if (!crypto::fillRandom(uuid.bytes_)) throw std::runtime_error("no random bytes");
  // RFC 4122, section 4.4: version 4 in the high nibble of byte 6, variant 10 in the high bits of byte 8.
  uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0F) | 0x40);
  uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3F) | 0x80);
  return uuid;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
  if (text.size() != canonicalLength) return std::nullopt;
  Uuid uuid;
  std::size_t nibble = 0;
  for (std::size_t position = 0; position < text.size(); ++position) {
    if (isDashPosition(position)) {
      if (text[position] != '-') return std::nullopt;
      continue;
    }
    const int value = hexadecimalValue(text[position]);
    if (value < 0) return std::nullopt;
    auto& byte = uuid.bytes_[nibble / 2];
    byte = static_cast<std::uint8_t>(byte << 4 | value);
    ++nibble;
  }
  return uuid;
}

std::string Uuid::text() const {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(canonicalLength);
  for (const auto byte : bytes_) {
    if (isDashPosition(text.size())) text += '-';
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
}

}  // namespace murmel
