#include "Foundation/Base64.h"

#include <array>

namespace murmel::base64 {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noDigit = 0xFF;

constexpr auto digitValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(noDigit);
  for (std::size_t index = 0; index < alphabet.size(); ++index) {
    values[static_cast<std::uint8_t>(alphabet[index])] = static_cast<std::uint8_t>(index);
  }
  return values;
}();

constexpr std::uint8_t valueOf(char digit) {
  return digitValues[static_cast<std::uint8_t>(digit)];
}

}  // namespace

void appendEncoded(std::string& text, std::span<const std::uint8_t> bytes) {
  const auto start = text.size();
  text.resize(start + encodedSize(bytes.size()), '=');
  char* out = text.data() + start;
  std::size_t index = 0;
  for (; index + 3 <= bytes.size(); index += 3) {
    const auto group =
        static_cast<std::uint32_t>(bytes[index] << 16 | bytes[index + 1] << 8 | bytes[index + 2]);
    *out++ = alphabet[group >> 18];
    *out++ = alphabet[group >> 12 & 63];
    *out++ = alphabet[group >> 6 & 63];
    *out++ = alphabet[group & 63];
  }
  if (index + 1 == bytes.size()) {
    *out++ = alphabet[bytes[index] >> 2];
    *out++ = alphabet[(bytes[index] & 3) << 4];
  } else if (index + 2 == bytes.size()) {
    *out++ = alphabet[bytes[index] >> 2];
    *out++ = alphabet[(bytes[index] & 3) << 4 | bytes[index + 1] >> 4];
    *out++ = alphabet[(bytes[index + 1] & 15) << 2];
  }
}

std::string encode(std::span<const std::uint8_t> bytes) {
  std::string text;
  appendEncoded(text, bytes);
  return text;
}

std::optional<std::size_t> decodeInto(std::string_view text, std::uint8_t* out) {
  if (text.size() % 4 != 0) return std::nullopt;
  if (text.empty()) return 0;
  std::size_t written = 0;
  const auto last = text.size() - 4;
  for (std::size_t index = 0; index < last; index += 4) {
    const std::uint32_t a = valueOf(text[index]);
    const std::uint32_t b = valueOf(text[index + 1]);
    const std::uint32_t c = valueOf(text[index + 2]);
    const std::uint32_t d = valueOf(text[index + 3]);
    if ((a | b | c | d) > 63) return std::nullopt;
    out[written++] = static_cast<std::uint8_t>(a << 2 | b >> 4);
    out[written++] = static_cast<std::uint8_t>(b << 4 | c >> 2);
    out[written++] = static_cast<std::uint8_t>(c << 6 | d);
  }
  const std::uint32_t a = valueOf(text[last]);
  const std::uint32_t b = valueOf(text[last + 1]);
  const bool onePadded = text[last + 3] == '=';
  const bool twoPadded = onePadded && text[last + 2] == '=';
  const std::uint32_t c = twoPadded ? 0 : valueOf(text[last + 2]);
  const std::uint32_t d = onePadded ? 0 : valueOf(text[last + 3]);
  if ((a | b | c | d) > 63) return std::nullopt;
  if (twoPadded && (b & 15) != 0) return std::nullopt;
  if (onePadded && (c & 3) != 0) return std::nullopt;
  out[written++] = static_cast<std::uint8_t>(a << 2 | b >> 4);
  if (!twoPadded) out[written++] = static_cast<std::uint8_t>(b << 4 | c >> 2);
  if (!onePadded) out[written++] = static_cast<std::uint8_t>(c << 6 | d);
  return written;
}

std::optional<std::vector<std::uint8_t>> decode(std::string_view text) {
  std::vector<std::uint8_t> bytes(text.size() / 4 * 3);
  const auto size = decodeInto(text, bytes.data());
  if (!size) return std::nullopt;
  bytes.resize(*size);
  return bytes;
}

}  // namespace murmel::base64
