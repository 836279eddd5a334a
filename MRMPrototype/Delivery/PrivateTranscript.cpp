#include "Delivery/PrivateTranscript.h"

#include "Foundation/Text/Text.h"

#include <utility>
#include <vector>

namespace murmel {

namespace {

/// What a recogniser writes and ISO 8859-1 lacks, as a typewriter has it.
std::string_view typewritten(char32_t scalar) {
  switch (scalar) {
    case U'\u2010':  // hyphens and dashes
    case U'\u2011':
    case U'\u2013':
    case U'\u2014':
      return "-";
    case U'\u2018':
    case U'\u2019':
    case U'\u201A':
      return "'";
    case U'\u201C':
    case U'\u201D':
    case U'\u201E':
      return "\"";
    case U'\u2026':
      return "...";
    case U'\u202F':  // the narrow space that does not break
      return "\xA0";
    default:
      return {};
  }
}

/// ISO 8859-1, which is what the type STRING means and all that the oldest toolkits ask for; nothing when the
/// text has other letters.
std::optional<std::string> latin1(const std::string& utf8) {
  constexpr char32_t lastLatin1 = 0xFF;
  std::string bytes;
  for (const auto scalar : text::scalars(utf8)) {
    if (scalar <= lastLatin1) {
      bytes += static_cast<char>(scalar);
    } else if (const auto replacement = typewritten(scalar); !replacement.empty()) {
      bytes += replacement;
    } else {
      return std::nullopt;
    }
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
