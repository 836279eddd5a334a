#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace murmel {

/// A JSON value. A class of our own over the library, whose templates take seconds of compilation in each
/// file that sees them.
///
/// What is read may come from anywhere, so looking at a value never fails: what is absent or of another kind
/// is nothing, an absent member or element is null. Strings lie on the heap, whatever their size: programs
/// that words go through overwrite what they give back to it.
class Json {
 public:
  struct Member;
  using Array = std::vector<Json>;
  using Object = std::map<std::string, Json, std::less<>>;

  Json() noexcept = default;  ///< null
  Json(bool value);
  Json(double value);
  template <std::integral Number>
  Json(Number number);
  Json(const char* text);
  Json(std::string_view text);
  Json(std::string text);
  Json(const void*) = delete;  // would be a boolean
  Json(const std::vector<std::string>& texts);
  /// An object.
  Json(std::initializer_list<Member> members);
  static Json object();
  static Json array(std::initializer_list<Json> elements = {});

  ~Json();
  Json(const Json& other);
  Json(Json&& other) noexcept;
  Json& operator=(const Json& other);
  Json& operator=(Json&& other) noexcept;

  [[nodiscard]] bool isObject() const;
  [[nodiscard]] bool isArray() const;
  [[nodiscard]] std::optional<bool> boolean() const;
  /// An integer in this range. A number with a fraction or an exponent is none.
  [[nodiscard]] std::optional<std::int64_t> integer() const;
  /// An integer that is not negative.
  [[nodiscard]] std::optional<std::uint64_t> unsignedInteger() const;
  /// Any number.
  [[nodiscard]] std::optional<double> number() const;
  [[nodiscard]] std::optional<std::string> text() const;
  /// Empty when it is none.
  [[nodiscard]] std::string textOrEmpty() const { return text().value_or(""); }
  /// The text itself, while the value is left alone.
  [[nodiscard]] std::optional<std::string_view> view() const;
  /// None when it is no array.
  [[nodiscard]] const Array& elements() const;
  /// By name, none when it is no object.
  [[nodiscard]] const Object& members() const;
  /// How many members or elements there are.
  [[nodiscard]] std::size_t size() const;

  [[nodiscard]] const Json& element(std::size_t index) const;
  [[nodiscard]] bool contains(std::string_view key) const;
  const Json& operator[](std::string_view key) const;
  /// Adds the member when it is not there; what is no object becomes one.
  Json& operator[](std::string_view key);
  void remove(std::string_view key);
  /// The new element. What is no array becomes one.
  Json& append(Json element);

  /// Numbers are equal by their value, however they are written.
  friend bool operator==(const Json& left, const Json& right);

 private:
  // A signed integer is a negative one: each number has one place.
  using Value = std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double,
                             std::unique_ptr<std::string>, std::unique_ptr<Array>, std::unique_ptr<Object>>;

  Value value_;
};

struct Json::Member {
  std::string_view key;
  Json value;
};

template <std::integral Number>
Json::Json(Number number) {
  if (std::cmp_less(number, 0))
    value_ = static_cast<std::int64_t>(number);
  else
    value_ = static_cast<std::uint64_t>(number);
}

/// The value of the text (RFC 8259 in UTF-8); null when it is malformed, more than one value, or nested more
/// than 512 deep. Of members with one name the last counts.
Json parsedJson(std::string_view text);

struct JsonFault {
  enum class Kind { malformed, numberTooLarge, tooDeep, repeatedKey };

  Kind kind = Kind::malformed;
  std::size_t byte = 0;  ///< where a reader of malformed text stopped, counted from 1
  std::string key;       ///< the repeated one
};

/// As above, with at most `deepest` levels around a value and no name twice in an object. The first fault;
/// malformed text is malformed, whatever else is wrong with it.
std::expected<Json, JsonFault> strictlyParsedJson(std::string_view text, std::size_t deepest);

enum class JsonCharacters { utf8, ascii };

/// One line without an end, or lines indented by so many spaces. Bytes that are not UTF-8 become U+FFFD.
std::string jsonText(const Json& value, JsonCharacters characters = JsonCharacters::utf8,
                     int indentation = -1);

}  // namespace murmel
