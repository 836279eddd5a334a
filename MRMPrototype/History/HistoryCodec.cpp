#include "History/HistoryCodec.h"

#include "Foundation/Json/JsonCursor.h"
#include "Foundation/Json/JsonText.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace murmel {

namespace {

/// Writes the list piece by piece to `append`. Run twice: once to measure, once into memory of that size.
template <class Append>
void writeEntries(Append append, std::span<const HistoryEntry> entries) {
  const auto number = [&](auto value) {
    std::array<char, 32> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    append(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
  };
  const auto string = [&](const std::string& value) {
    if (isAscii(value) || text::isValidUtf8(value)) {
      appendJsonString(append, value);
    } else {
      const SpokenText repaired(text::repairedUtf8(value));
      appendJsonString(append, repaired.reveal());
    }
  };
  append(std::string_view("["));
  bool first = true;
  for (const auto& entry : entries) {
    append(std::string_view(first ? R"({"id":")" : R"(,{"id":")"));
    first = false;
    append(std::string_view(entry.id.text()));
    append(std::string_view(R"(","createdAt":)"));
    number(std::isfinite(entry.createdAt) ? entry.createdAt : 0.0);  // JSON has no other number
    append(std::string_view(R"(,"text":)"));
    string(entry.text.reveal());
    append(std::string_view(R"(,"providerID":)"));
    string(entry.providerID);
    append(std::string_view(R"(,"language":)"));
    string(entry.language);
    if (entry.unrecognizedParts) {
      append(std::string_view(R"(,"unrecognizedParts":)"));
      number(*entry.unrecognizedParts);
    }
    append(std::string_view("}"));
  }
  append(std::string_view("]"));
}

bool readEntry(JsonCursor& cursor, HistoryEntry& entry) {
  enum Member : unsigned { id = 1, createdAt = 2, spoken = 4, provider = 8, language = 16, all = 31 };
  unsigned seen = 0;
  std::string value;
  const bool read = cursor.object([&](std::string_view key) {
    if (key == "id") {
      if (!cursor.string(value)) return false;
      const auto parsed = Uuid::parse(value);
      if (!parsed) return false;
      entry.id = *parsed;
      seen |= id;
      return true;
    }
    if (key == "createdAt") {
      seen |= createdAt;
      return cursor.number(entry.createdAt);
    }
    if (key == "text") {
      seen |= spoken;
      std::string decoded;
      const bool good = cursor.string(decoded);
      entry.text = SpokenText(std::move(decoded));
      return good;
    }
    if (key == "providerID") {
      seen |= provider;
      return cursor.string(entry.providerID);
    }
    if (key == "language") {
      seen |= language;
      return cursor.string(entry.language);
    }
    if (key == "unrecognizedParts") {
      entry.unrecognizedParts.reset();
      if (cursor.nullAhead()) return cursor.null();
      std::int64_t parts = 0;
      if (!cursor.integer(parts) || parts < std::numeric_limits<int>::min() ||
          parts > std::numeric_limits<int>::max()) {
        return false;
      }
      entry.unrecognizedParts = static_cast<int>(parts);
      return true;
    }
    return cursor.skip();
  });
  return read && seen == all;
}

}  // namespace

SecretBytes encodeHistory(std::span<const HistoryEntry> entries) {
  std::size_t size = 0;
  writeEntries([&](std::string_view piece) { size += piece.size(); }, entries);
  SecretBytes bytes(size);
  auto* out = bytes.reveal().data();
  writeEntries([&](std::string_view piece) { out = std::ranges::copy(piece, out).out; }, entries);
  return bytes;
}

std::optional<std::vector<HistoryEntry>> decodeHistory(std::span<const std::uint8_t> bytes) {
  std::vector<HistoryEntry> entries;
  JsonCursor cursor(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  const bool read = cursor.array([&] {
    HistoryEntry entry;
    if (!readEntry(cursor, entry)) return false;
    entries.push_back(std::move(entry));
    return true;
  });
  if (!read || !cursor.atEnd()) return std::nullopt;
  return entries;
}

}  // namespace murmel
