#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Base64 with the standard alphabet and padding (RFC 4648, section 4). Strict: white space, missing padding
/// and stray bits after the last byte are errors.
namespace murmel::base64 {

constexpr std::size_t encodedSize(std::size_t byteCount) {
  return (byteCount + 2) / 3 * 4;
}

void appendEncoded(std::string& text, std::span<const std::uint8_t> bytes);
[[nodiscard]] std::string encode(std::span<const std::uint8_t> bytes);

/// Decodes into `out`, which must hold `text.size() / 4 * 3` bytes and may begin where `text` does: the
/// result never overtakes what is still to be read. Gives the number of bytes, or nothing.
[[nodiscard]] std::optional<std::size_t> decodeInto(std::string_view text, std::uint8_t* out);
[[nodiscard]] std::optional<std::vector<std::uint8_t>> decode(std::string_view text);

}  // namespace murmel::base64
