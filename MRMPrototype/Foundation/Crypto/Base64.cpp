#include "Foundation/Crypto/Base64.h"

#include <limits>
#include <stdexcept>

#include <openssl/evp.h>

namespace murmel::base64 {

namespace {

constexpr char padding = '=';
constexpr std::size_t groupBytes = 3;
constexpr std::size_t groupCharacters = 4;

const unsigned char* charactersOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

/// The library counts in int.
int checkedSize(std::size_t size) {
  if (size > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    throw std::length_error("too much for base64 at once");
  return static_cast<int>(size);
}

}  // namespace

void appendEncoded(std::string& text, std::span<const std::uint8_t> bytes) {
  const auto before = text.size();
  const auto size = before + encodedSize(bytes.size());
  const int byteCount = checkedSize(bytes.size());
  // Leaves out the zeroing that `resize` would do. The library ends with a zero byte, where the string's own
  // is.
  text.resize_and_overwrite(size, [&](char* data, std::size_t) {
    ::EVP_EncodeBlock(reinterpret_cast<unsigned char*>(data + before), bytes.data(), byteCount);
    return size;
  });
}

std::string encoded(std::span<const std::uint8_t> bytes) {
  std::string text;
  appendEncoded(text, bytes);
  return text;
}

std::optional<std::vector<std::uint8_t>> decoded(std::string_view text) {
  if (text.size() % groupCharacters != 0) return std::nullopt;
  if (text.empty()) return std::vector<std::uint8_t>();
  const std::size_t padded = text.ends_with("==") ? 2 : text.ends_with(padding) ? 1 : 0;
  // The library takes padding for zeros wherever it stands, and leaves out white space at the ends.
  if (text.substr(0, text.size() - padded).contains(padding)) return std::nullopt;
  std::vector<std::uint8_t> bytes(text.size() / groupCharacters * groupBytes);
  const int decodedSize = ::EVP_DecodeBlock(bytes.data(), charactersOf(text), checkedSize(text.size()));
  if (decodedSize < 0 || static_cast<std::size_t>(decodedSize) != bytes.size()) return std::nullopt;
  bytes.resize(bytes.size() - padded);
  if (padded > 0) {  // stray bits before the padding
    const auto last = std::span(bytes).last(groupBytes - padded);
    if (encoded(last) != text.substr(text.size() - groupCharacters)) return std::nullopt;
  }
  return bytes;
}

}  // namespace murmel::base64
