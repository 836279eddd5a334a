#include "Foundation/Crypto/Base64.h"

#include <array>
#include <cstring>

namespace murmel::base64 {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char padding = '=';

/// The two characters of every 12-bit value: two look-ups encode three bytes.
constexpr auto characterPairs = [] {
  std::array<std::array<char, 2>, 4'096> pairs{};
  for (std::size_t value = 0; value < pairs.size(); ++value)
    pairs[value] = {alphabet[value >> 6], alphabet[value & 63]};
  return pairs;
}();

/// Above every sum of four shifted values: tells a character outside the alphabet.
constexpr std::uint32_t invalid = 1U << 24;

/// The value of every character, already shifted to its place in a group of four.
constexpr auto shiftedValues = [] {
  std::array<std::array<std::uint32_t, 256>, 4> tables{};
  for (std::size_t place = 0; place < tables.size(); ++place) {
    tables[place].fill(invalid);
    for (std::size_t value = 0; value < alphabet.size(); ++value) {
      tables[place][static_cast<unsigned char>(alphabet[value])] =
          static_cast<std::uint32_t>(value << (6 * (3 - place)));
    }
  }
  return tables;
}();

char* encodeGroup(char* out, std::uint32_t bits) {
  std::memcpy(out, characterPairs[bits >> 12].data(), 2);
  std::memcpy(out + 2, characterPairs[bits & 0xFFF].data(), 2);
  return out + 4;
}

void encodeTo(char* out, std::span<const std::uint8_t> bytes) {
  const auto* in = bytes.data();
  const auto* const lastWhole = in + bytes.size() / 3 * 3;
  for (; in != lastWhole; in += 3)
    out = encodeGroup(
        out, static_cast<std::uint32_t>(in[0]) << 16 | static_cast<std::uint32_t>(in[1]) << 8 | in[2]);
  const auto rest = bytes.size() % 3;
  if (rest == 0) return;
  const std::uint32_t second = rest == 2 ? in[1] : 0U;
  out = encodeGroup(out, static_cast<std::uint32_t>(in[0]) << 16 | second << 8);
  out[-1] = padding;
  if (rest == 1) out[-2] = padding;
}

std::uint32_t groupBits(const char* group) {
  std::uint32_t bits = 0;
  for (std::size_t place = 0; place < 4; ++place)
    bits |= shiftedValues[place][static_cast<unsigned char>(group[place])];
  return bits;
}

std::uint8_t byteAt(std::uint32_t bits, int shift) {
  return static_cast<std::uint8_t>(bits >> shift & 0xFF);
}

}  // namespace

void appendEncoded(std::string& text, std::span<const std::uint8_t> bytes) {
  const auto before = text.size();
  const auto size = before + encodedSize(bytes.size());
  // Leaves out the zeroing that `resize` would do.
  text.resize_and_overwrite(size, [&](char* data, std::size_t) {
    encodeTo(data + before, bytes);
    return size;
  });
}

std::string encoded(std::span<const std::uint8_t> bytes) {
  std::string text;
  appendEncoded(text, bytes);
  return text;
}

std::optional<std::vector<std::uint8_t>> decoded(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  if (text.empty()) return std::vector<std::uint8_t>();
  const std::size_t padded = text.ends_with("==") ? 2 : text.ends_with("=") ? 1 : 0;
  std::vector<std::uint8_t> bytes(text.size() / 4 * 3 - padded);

  const auto wholeGroups = text.size() / 4 - (padded > 0 ? 1 : 0);
  const char* in = text.data();
  auto* out = bytes.data();
  std::uint32_t seen = 0;
  for (std::size_t group = 0; group < wholeGroups; ++group, in += 4, out += 3) {
    const auto bits = groupBits(in);
    seen |= bits;
    out[0] = byteAt(bits, 16);
    out[1] = byteAt(bits, 8);
    out[2] = byteAt(bits, 0);
  }
  if (padded > 0) {
    std::array<char, 4> last{in[0], in[1], padded == 2 ? 'A' : in[2], 'A'};
    const auto bits = groupBits(last.data());
    seen |= bits;
    out[0] = byteAt(bits, 16);
    if (padded == 1) out[1] = byteAt(bits, 8);
    const std::uint32_t stray = padded == 2 ? 0xFFFF : 0xFF;
    if ((bits & stray) != 0) return std::nullopt;
  }
  if ((seen & invalid) != 0) return std::nullopt;
  return bytes;
}

}  // namespace murmel::base64
