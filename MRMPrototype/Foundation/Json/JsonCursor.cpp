#include "Foundation/Json/JsonCursor.h"

#include "Foundation/Json/JsonText.h"
#include "Foundation/Text/Text.h"

#include <charconv>
#include <cmath>
#include <optional>

namespace murmel {

namespace {

constexpr int deepestNesting = 64;

constexpr bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

/// The four hexadecimal digits at `position`.
std::optional<std::uint32_t> hexadecimalUnit(std::string_view text, std::size_t position) {
  if (position + 4 > text.size()) return std::nullopt;
  std::uint32_t unit = 0;
  const auto* const begin = text.data() + position;
  const auto [end, error] = std::from_chars(begin, begin + 4, unit, 16);
  if (error != std::errc{} || end != begin + 4) return std::nullopt;
  return unit;
}

std::optional<char> simpleEscape(char letter) {
  switch (letter) {
    case '"':
    case '\\':
    case '/':
      return letter;
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return std::nullopt;
  }
}

/// The scalar of an escape whose "\u" is at `position`, which moves past it. A half of a surrogate pair alone
/// is an error.
std::optional<char32_t> unicodeEscape(std::string_view raw, std::size_t& position) {
  const auto first = hexadecimalUnit(raw, position + 2);
  if (!first) return std::nullopt;
  position += 6;
  if (*first < 0xD800 || *first > 0xDFFF) return static_cast<char32_t>(*first);
  if (*first > 0xDBFF || raw.substr(position, 2) != "\\u") return std::nullopt;
  const auto second = hexadecimalUnit(raw, position + 2);
  if (!second || *second < 0xDC00 || *second > 0xDFFF) return std::nullopt;
  position += 6;
  return static_cast<char32_t>(0x10000 + ((*first - 0xD800) << 10) + (*second - 0xDC00));
}

constexpr std::size_t utf8Size(char32_t scalar) {
  return scalar < 0x80 ? 1 : scalar < 0x800 ? 2 : scalar < 0x10000 ? 3 : 4;
}

/// Walks the pieces of a string with escapes: runs of plain text and single scalars.
template <class OnRun, class OnScalar>
bool forEachPiece(std::string_view raw, OnRun onRun, OnScalar onScalar) {
  std::size_t position = 0;
  while (position < raw.size()) {
    const auto backslash = std::min(raw.find('\\', position), raw.size());
    if (backslash > position) onRun(raw.substr(position, backslash - position));
    position = backslash;
    if (position == raw.size()) break;
    if (position + 1 >= raw.size()) return false;
    if (raw[position + 1] == 'u') {
      const auto scalar = unicodeEscape(raw, position);
      if (!scalar) return false;
      onScalar(*scalar);
    } else {
      const auto letter = simpleEscape(raw[position + 1]);
      if (!letter) return false;
      onScalar(static_cast<char32_t>(*letter));
      position += 2;
    }
  }
  return true;
}

}  // namespace

void JsonCursor::skipWhitespace() {
  while (position_ < text_.size()) {
    const char next = text_[position_];
    if (next != ' ' && next != '\n' && next != '\r' && next != '\t') return;
    ++position_;
  }
}

bool JsonCursor::take(char expected) {
  skipWhitespace();
  if (position_ >= text_.size() || text_[position_] != expected) return false;
  ++position_;
  return true;
}

bool JsonCursor::takeLiteral(std::string_view literal) {
  skipWhitespace();
  if (text_.substr(position_, literal.size()) != literal) return false;
  position_ += literal.size();
  return true;
}

bool JsonCursor::rawString(RawString& value) {
  if (!take('"')) return false;
  const auto start = position_;
  bool escaped = false;
  for (position_ += jsonPlainRun(text_.substr(position_)); position_ < text_.size(); ++position_) {
    const auto byte = static_cast<unsigned char>(text_[position_]);
    if (byte == '"') break;
    if (byte < 0x20) return false;
    if (byte == '\\') {
      escaped = true;
      ++position_;  // whatever follows is not the end
    }
  }
  if (position_ >= text_.size()) return false;
  value = {start, position_ - start, escaped};
  ++position_;
  const auto raw = text_.substr(start, value.size);
  return isAscii(raw) || text::isValidUtf8(raw);
}

bool JsonCursor::string(std::string& value) {
  RawString raw;
  if (!rawString(raw)) return false;
  const auto source = text_.substr(raw.offset, raw.size);
  if (!raw.escaped) {
    value.assign(source);
    return true;
  }
  std::size_t size = 0;
  if (!forEachPiece(
          source, [&](std::string_view run) { size += run.size(); },
          [&](char32_t scalar) { size += utf8Size(scalar); })) {
    return false;
  }
  value.clear();
  value.reserve(size);
  return forEachPiece(
      source, [&](std::string_view run) { value += run; },
      [&](char32_t scalar) { text::appendScalar(value, scalar); });
}

bool JsonCursor::numberToken(std::string_view& token, bool& integral) {
  skipWhitespace();
  const auto start = position_;
  const auto digits = [&] {
    const auto first = position_;
    while (position_ < text_.size() && isDigit(text_[position_])) ++position_;
    return position_ - first;
  };
  const auto at = [&](char character) { return position_ < text_.size() && text_[position_] == character; };
  if (at('-')) ++position_;
  const bool zeroFirst = at('0');
  const auto whole = digits();
  if (whole == 0 || (zeroFirst && whole > 1)) return false;
  integral = true;
  if (at('.')) {
    integral = false;
    ++position_;
    if (digits() == 0) return false;
  }
  if (at('e') || at('E')) {
    integral = false;
    ++position_;
    if (at('+') || at('-')) ++position_;
    if (digits() == 0) return false;
  }
  token = text_.substr(start, position_ - start);
  return true;
}

bool JsonCursor::number(double& value) {
  std::string_view token;
  bool integral = false;
  if (!numberToken(token, integral)) return false;
  const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
  return error == std::errc{} && end == token.data() + token.size() && std::isfinite(value);
}

bool JsonCursor::integer(std::int64_t& value) {
  std::string_view token;
  bool integral = false;
  if (!numberToken(token, integral) || !integral) return false;
  const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
  return error == std::errc{} && end == token.data() + token.size();
}

bool JsonCursor::null() {
  return takeLiteral("null");
}

bool JsonCursor::nullAhead() {
  skipWhitespace();
  return text_.substr(position_, 4) == "null";
}

bool JsonCursor::skip() {
  return skipNested(0);
}

bool JsonCursor::skipNested(int depth) {
  if (depth > deepestNesting) return false;
  skipWhitespace();
  if (position_ >= text_.size()) return false;
  switch (text_[position_]) {
    case '{':
      return object([&](std::string_view) { return skipNested(depth + 1); });
    case '[':
      return array([&] { return skipNested(depth + 1); });
    case '"': {
      RawString raw;
      if (!rawString(raw)) return false;
      if (!raw.escaped) return true;
      const auto ignore = [](const auto&) {};
      return forEachPiece(text_.substr(raw.offset, raw.size), ignore, ignore);
    }
    case 't':
      return takeLiteral("true");
    case 'f':
      return takeLiteral("false");
    case 'n':
      return takeLiteral("null");
    default: {
      std::string_view token;
      bool integral = false;
      return numberToken(token, integral);
    }
  }
}

bool JsonCursor::atEnd() {
  skipWhitespace();
  return position_ == text_.size();
}

}  // namespace murmel
