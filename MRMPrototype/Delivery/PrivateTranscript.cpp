#include "Delivery/PrivateTranscript.h"

#include "Foundation/Text/Text.h"

#include <utility>
#include <vector>

namespace murmel {

namespace {

/// ISO 8859-1, which is what the type STRING means; nothing when the text has other characters.
std::optional<std::string> latin1(const std::string& utf8) {
  constexpr char32_t lastLatin1 = 0xFF;
  std::string bytes;
  for (const auto scalar : text::scalars(utf8)) {
    if (scalar > lastLatin1) return std::nullopt;
    bytes += static_cast<char>(scalar);
  }
  return bytes;
}

}  // namespace

ClipboardSnapshot privateTranscript(const SpokenText& text, const std::optional<OwnershipMarker>& marker) {
  const auto& utf8 = text.reveal();
  std::vector<ClipboardSnapshot::Value> values;
  const auto add = [&](std::string_view type, std::string_view data, std::string_view encoding = {}) {
    values.push_back({std::string(type), std::string(data), std::string(encoding), 8});
  };
  add(plainTextType, utf8);
  for (const auto type : privatePasteboardTypes) add(type, {});
  if (marker) add(marker->type, marker->bytes);
  add(secretHintType, secretHint);
  add("text/plain;charset=utf-8", utf8);
  add("text/plain", utf8);
  add("TEXT", utf8, plainTextType);
  if (const auto bytes = latin1(utf8)) add("STRING", *bytes);

  ClipboardSnapshot snapshot;
  snapshot.items.push_back({std::move(values)});
  return snapshot;
}

}  // namespace murmel
