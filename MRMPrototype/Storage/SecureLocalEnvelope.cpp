#include "Storage/SecureLocalEnvelope.h"

#include "Foundation/Base64.h"
#include "Foundation/JsonCursor.h"
#include "Foundation/JsonText.h"

#include <algorithm>

#include <fmt/format.h>

namespace murmel {

namespace {

/// Replaces the characters of a base64 string, which stand in `bytes`, by what they stand for, and drops the
/// rest.
bool decodeInPlace(std::vector<std::uint8_t>& bytes, JsonCursor::RawString box) {
  const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(box.offset);
  auto end = begin + static_cast<std::ptrdiff_t>(box.size);
  // Some writers escape the slash, the only character of the alphabet that may be.
  if (box.escaped) end = std::remove(begin, end, static_cast<std::uint8_t>('\\'));
  bytes.erase(end, bytes.end());
  bytes.erase(bytes.begin(), begin);
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const auto size = base64::decodeInto(text, bytes.data());
  if (!size) return false;
  bytes.resize(*size);
  return true;
}

/// A backslash stands before nothing but a slash.
bool escapesOnlySlashes(std::string_view text) {
  for (auto position = text.find('\\'); position != std::string_view::npos;
       position = text.find('\\', position + 2)) {
    if (text.substr(position, 2) != "\\/") return false;
  }
  return true;
}

}  // namespace

bool SecureLocalEnvelope::hasMagic(std::span<const std::uint8_t> fileBytes) {
  return fileBytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), fileBytes.begin());
}

SecureResult<SecureLocalEnvelope> SecureLocalEnvelope::decode(std::vector<std::uint8_t> fileBytes) {
  const auto invalid =
      std::unexpected(SecureLocalStorageError(SecureLocalStorageError::Case::invalidEnvelope));
  if (!hasMagic(fileBytes)) return invalid;
  fileBytes.erase(fileBytes.begin(), fileBytes.begin() + magic.size());
  const std::string_view text(reinterpret_cast<const char*>(fileBytes.data()), fileBytes.size());

  SecureLocalEnvelope envelope;
  JsonCursor::RawString box;
  bool hasVersion = false;
  bool hasKey = false;
  bool hasBox = false;
  JsonCursor cursor(text);
  const bool read = cursor.object([&](std::string_view key) {
    if (key == "version") return hasVersion = cursor.integer(envelope.version);
    if (key == "keyID") return hasKey = cursor.string(envelope.keyID);
    if (key == "sealedData") return hasBox = cursor.rawString(box);
    return cursor.skip();
  });
  if (!read || !cursor.atEnd() || !hasVersion || !hasKey || !hasBox) return invalid;
  if (box.escaped && !escapesOnlySlashes(text.substr(box.offset, box.size))) return invalid;
  if (!decodeInPlace(fileBytes, box)) return invalid;
  envelope.sealedData = std::move(fileBytes);
  return envelope;
}

std::string SecureLocalEnvelope::encode() const {
  std::string text;
  constexpr std::size_t rest = 256;  // magic, keys and punctuation
  text.reserve(base64::encodedSize(sealedData.size()) + keyID.size() + rest);
  text += magic;
  text += fmt::format(R"({{"version":{},"keyID":)", version);
  appendJsonString([&](std::string_view piece) { text += piece; }, keyID);
  text += R"(,"sealedData":")";
  base64::appendEncoded(text, sealedData);
  text += "\"}";
  return text;
}

}  // namespace murmel
