#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace murmel {

/// Reads JSON in place, value by value, without building a tree and without keeping any part of the text: for
/// data whose freed copies must not linger in memory, and for large data.
///
/// Strict RFC 8259 in UTF-8. Each function consumes one value of its kind and answers false when the text is
/// malformed or the value is of another kind; nothing may be read after that. The text must outlive the
/// cursor.
class JsonCursor {
 public:
  explicit JsonCursor(std::string_view text) : text_(text) {}

  /// A string between its quotes, as it stands in the text; `escaped` when it holds a backslash.
  struct RawString {
    std::size_t offset = 0;
    std::size_t size = 0;
    bool escaped = false;
  };

  /// Calls `onMember(key)` for each member; it consumes the value and answers whether to go on.
  template <class OnMember>
  bool object(OnMember onMember);
  /// Calls `onElement()` for each element; it consumes the element and answers whether to go on.
  template <class OnElement>
  bool array(OnElement onElement);

  /// Decodes a string into memory that is allocated once, in its final size.
  bool string(std::string& value);
  bool rawString(RawString& value);
  /// Any finite number.
  bool number(double& value);
  /// A number without fraction and exponent that fits.
  bool integer(std::int64_t& value);
  bool null();
  /// Any value, nested up to 64 levels.
  bool skip();
  /// Only white space is left.
  bool atEnd();
  /// The next value is a null.
  bool nullAhead();

 private:
  bool take(char expected);
  bool takeLiteral(std::string_view literal);
  void skipWhitespace();
  bool numberToken(std::string_view& token, bool& integral);
  bool skipNested(int depth);

  std::string_view text_;
  std::size_t position_ = 0;
};

template <class OnMember>
bool JsonCursor::object(OnMember onMember) {
  if (!take('{')) return false;
  if (take('}')) return true;
  std::string key;
  do {
    if (!string(key) || !take(':') || !onMember(std::string_view(key))) return false;
  } while (take(','));
  return take('}');
}

template <class OnElement>
bool JsonCursor::array(OnElement onElement) {
  if (!take('[')) return false;
  if (take(']')) return true;
  do {
    if (!onElement()) return false;
  } while (take(','));
  return take(']');
}

}  // namespace murmel
