#include "Storage/SecureLocalEnvelope.h"

#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/JsonCursor.h"
#include "Foundation/Json/JsonText.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include <fmt/core.h>

namespace murmel {

namespace {

/// A base64 string as it stands in `text`, between its quotes. Any character of it may be escaped.
std::optional<std::vector<std::uint8_t>> decodeBox(std::string_view text, const JsonCursor::RawString& box) {
  if (!box.escaped) return base64::decoded(text.substr(box.offset, box.size));
  std::string plain;
  JsonCursor quoted(text.substr(box.offset - 1, box.size + 2));
  if (!quoted.string(plain)) return std::nullopt;
  return base64::decoded(plain);
}

}  // namespace

bool SecureLocalEnvelope::hasMagic(std::span<const std::uint8_t> fileBytes) {
  return fileBytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), fileBytes.begin());
}

SecureResult<SecureLocalEnvelope> SecureLocalEnvelope::decode(std::span<const std::uint8_t> fileBytes) {
  const auto invalid =
      std::unexpected(SecureLocalStorageError(SecureLocalStorageError::Case::invalidEnvelope));
  if (!hasMagic(fileBytes)) return invalid;
  const auto json = fileBytes.subspan(magic.size());
  const std::string_view text(reinterpret_cast<const char*>(json.data()), json.size());

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
  auto sealedData = decodeBox(text, box);
  if (!sealedData) return invalid;
  envelope.sealedData = std::move(*sealedData);
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
