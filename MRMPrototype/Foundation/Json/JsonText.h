#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace murmel {

/// Number of bytes at the start of `text` that stand for themselves in a JSON string: no quote, no backslash,
/// no control character. May stop a few bytes early; eight bytes are looked at together.
inline std::size_t jsonPlainRun(std::string_view text) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t highBits = 0x8080808080808080;
  const auto hasZero = [](std::uint64_t bytes) { return (bytes - ones) & ~bytes & highBits; };
  std::size_t position = 0;
  for (; position + 8 <= text.size(); position += 8) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text.data() + position, 8);
    const auto control = (bytes - ones * 0x20) & ~bytes & highBits;
    if ((control | hasZero(bytes ^ ones * '"') | hasZero(bytes ^ ones * '\\')) != 0) break;
  }
  return position;
}

/// Whether no byte of `text` is above 127.
inline bool isAscii(std::string_view text) {
  std::uint64_t seen = 0;
  std::size_t position = 0;
  for (; position + 8 <= text.size(); position += 8) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text.data() + position, 8);
    seen |= bytes;
  }
  for (; position < text.size(); ++position) seen |= static_cast<unsigned char>(text[position]);
  return (seen & 0x8080808080808080) == 0;
}

/// Hands `text` (well-formed UTF-8) to `append(std::string_view)` as a JSON string with its quotes, in
/// pieces, without a copy of it.
template <class Append>
void appendJsonString(Append append, std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  append(std::string_view("\""));
  std::size_t plainStart = 0;
  for (std::size_t index = jsonPlainRun(text); index < text.size(); ++index) {
    const auto byte = static_cast<unsigned char>(text[index]);
    if (byte >= 0x20 && byte != '"' && byte != '\\') continue;
    append(text.substr(plainStart, index - plainStart));
    plainStart = index + 1;
    const auto run = jsonPlainRun(text.substr(plainStart));
    if (byte >= 0x20) {
      const char escape[] = {'\\', text[index]};
      append(std::string_view(escape, 2));
    } else {
      const char escape[] = {'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 15]};
      append(std::string_view(escape, 6));
    }
    index += run;
  }
  append(text.substr(plainStart));
  append(std::string_view("\""));
}

}  // namespace murmel
