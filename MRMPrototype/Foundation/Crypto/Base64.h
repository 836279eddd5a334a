#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Standard base64 (RFC 4648, section 4): with padding, without line breaks. Fast enough that minutes of
/// audio in one message do not count.
namespace murmel::base64 {

constexpr std::size_t encodedSize(std::size_t byteCount) {
  return (byteCount + 2) / 3 * 4;
}

/// Appends the encoded form of `bytes` to `text`.
void appendEncoded(std::string& text, std::span<const std::uint8_t> bytes);

[[nodiscard]] std::string encoded(std::span<const std::uint8_t> bytes);

/// Nothing unless `text` is exactly what the encoder would have written: other characters, missing padding
/// and stray bits before the padding are refused.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> decoded(std::string_view text);

}  // namespace murmel::base64
