#include "Foundation/Json/Json.h"

#include <nlohmann/json.hpp>

namespace murmel {

namespace {

/// Far above what anybody writes, far below what the stack holds.
constexpr std::size_t deepestAnywhere = 512;

template <class Held>
constexpr bool isHeldByPointer = requires(const Held& held) {
  held.get();
};

/// Builds the value while the library reads the text, which it does without recursion. After a fault it reads
/// on without building: the text may be malformed.
class Reader {
 public:
  Reader(std::size_t deepest, bool refusesRepeatedKeys)
      : deepest_(deepest), refusesRepeatedKeys_(refusesRepeatedKeys) {}

  std::expected<Json, JsonFault> result() && {
    if (fault_) return std::unexpected(*std::move(fault_));
    return std::move(root_);
  }

  // The names by which the library calls.
  bool null() { return take({}); }
  bool boolean(bool value) { return take(value); }
  bool number_integer(std::int64_t value) { return take(value); }
  bool number_unsigned(std::uint64_t value) { return take(value); }
  bool number_float(double value, const std::string&) { return take(value); }
  bool string(const std::string& value) { return take(value); }
  bool binary(const nlohmann::json::binary_t&) { return false; }  // no text has it
  bool start_object(std::size_t) { return open(Json::object()); }
  bool end_object() { return close(); }
  bool start_array(std::size_t) { return open(Json::array()); }
  bool end_array() { return close(); }

  bool key(const std::string& name) {
    if (fault_) return true;
    auto& object = *open_.back();
    if (refusesRepeatedKeys_ && object.contains(name)) {
      fault_ = {.kind = JsonFault::Kind::repeatedKey, .key = name};
    } else {
      member_ = &object[name];
    }
    return true;
  }

  bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception& error) {
    const bool isRange = dynamic_cast<const nlohmann::json::out_of_range*>(&error) != nullptr;
    fault_ = {.kind = isRange ? JsonFault::Kind::numberTooLarge : JsonFault::Kind::malformed,
              .byte = position,
              .key = {}};
    return false;
  }

 private:
  bool take(Json value) {
    place(std::move(value));
    return true;
  }
  bool open(Json container) {
    if (auto* const placed = place(std::move(container))) open_.push_back(placed);
    return true;
  }
  bool close() {
    if (!fault_) open_.pop_back();
    return true;
  }

  Json* place(Json value) {
    if (!fault_ && open_.size() > deepest_) fault_ = {.kind = JsonFault::Kind::tooDeep, .key = {}};
    if (fault_) return nullptr;
    if (open_.empty()) return &(root_ = std::move(value));
    if (member_ != nullptr) return &(*std::exchange(member_, nullptr) = std::move(value));
    return &open_.back()->append(std::move(value));
  }

  std::size_t deepest_;
  bool refusesRepeatedKeys_;
  Json root_;
  // A container stays where it is while it is open: only the innermost one grows.
  std::vector<Json*> open_;
  Json* member_ = nullptr;  ///< whose value is next
  std::optional<JsonFault> fault_;
};

std::expected<Json, JsonFault> read(std::string_view text, std::size_t deepest, bool refusesRepeatedKeys) {
  Reader reader(deepest, refusesRepeatedKeys);
  (void)nlohmann::json::sax_parse(text.begin(), text.end(), &reader);  // the reader knows
  return std::move(reader).result();
}

nlohmann::json forLibrary(const Json& value) {
  if (value.isObject()) {
    nlohmann::json::object_t object;  // in the same order
    for (const auto& [name, member] : value.members())
      object.emplace_hint(object.end(), name, forLibrary(member));
    return object;
  }
  if (value.isArray()) {
    nlohmann::json::array_t array;
    array.reserve(value.size());
    for (const auto& element : value.elements()) array.push_back(forLibrary(element));
    return array;
  }
  if (const auto text = value.view()) return *text;
  if (const auto boolean = value.boolean()) return *boolean;
  if (const auto integer = value.integer()) return *integer;
  if (const auto large = value.unsignedInteger()) return *large;
  if (const auto number = value.number()) return *number;
  return nullptr;
}

}  // namespace

Json::Json(bool value) : value_(value) {}
Json::Json(double value) : value_(value) {}
Json::Json(const char* text) : Json(std::string(text)) {}
Json::Json(std::string_view text) : Json(std::string(text)) {}
Json::Json(std::string text) : value_(std::make_unique<std::string>(std::move(text))) {}
Json::Json(const std::vector<std::string>& texts)
    : value_(std::make_unique<Array>(texts.begin(), texts.end())) {}
Json::Json(std::initializer_list<Member> members) : Json(object()) {
  for (const auto& [key, value] : members) (*this)[key] = value;
}

Json Json::object() {
  Json result;
  result.value_ = std::make_unique<Object>();
  return result;
}

Json Json::array(std::initializer_list<Json> elements) {
  Json result;
  result.value_ = std::make_unique<Array>(elements);
  return result;
}

Json::~Json() = default;
Json::Json(const Json& other)
    : value_(std::visit(
          []<class Held>(const Held& held) -> Value {
            if constexpr (isHeldByPointer<Held>)
              return std::make_unique<typename Held::element_type>(*held);
            else
              return held;
          },
          other.value_)) {}
Json::Json(Json&& other) noexcept : value_(std::exchange(other.value_, {})) {}
Json& Json::operator=(const Json& other) {
  return *this = Json(other);
}
Json& Json::operator=(Json&& other) noexcept {
  // The other may be a part of this.
  auto value = std::exchange(other.value_, {});
  value_.swap(value);
  return *this;
}

bool Json::isObject() const {
  return std::holds_alternative<std::unique_ptr<Object>>(value_);
}

bool Json::isArray() const {
  return std::holds_alternative<std::unique_ptr<Array>>(value_);
}

std::optional<bool> Json::boolean() const {
  const auto* const value = std::get_if<bool>(&value_);
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::optional<std::int64_t> Json::integer() const {
  if (const auto* const negative = std::get_if<std::int64_t>(&value_)) return *negative;
  const auto value = unsignedInteger();
  return value && std::in_range<std::int64_t>(*value) ? std::optional(static_cast<std::int64_t>(*value))
                                                      : std::nullopt;
}

std::optional<std::uint64_t> Json::unsignedInteger() const {
  const auto* const value = std::get_if<std::uint64_t>(&value_);
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::optional<double> Json::number() const {
  if (const auto* const value = std::get_if<double>(&value_)) return *value;
  if (const auto* const negative = std::get_if<std::int64_t>(&value_)) return static_cast<double>(*negative);
  const auto value = unsignedInteger();
  return value ? std::optional(static_cast<double>(*value)) : std::nullopt;
}

std::optional<std::string> Json::text() const {
  const auto text = view();
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

std::optional<std::string_view> Json::view() const {
  const auto* const text = std::get_if<std::unique_ptr<std::string>>(&value_);
  return text != nullptr ? std::optional<std::string_view>(**text) : std::nullopt;
}

const Json::Array& Json::elements() const {
  static const Array none;
  const auto* const array = std::get_if<std::unique_ptr<Array>>(&value_);
  return array != nullptr ? **array : none;
}

const Json::Object& Json::members() const {
  static const Object none;
  const auto* const object = std::get_if<std::unique_ptr<Object>>(&value_);
  return object != nullptr ? **object : none;
}

std::size_t Json::size() const {
  return elements().size() + members().size();
}

const Json& Json::element(std::size_t index) const {
  static const Json none;
  return index < elements().size() ? elements()[index] : none;
}

bool Json::contains(std::string_view key) const {
  return members().contains(key);
}

const Json& Json::operator[](std::string_view key) const {
  static const Json none;
  const auto found = members().find(key);
  return found == members().end() ? none : found->second;
}

Json& Json::operator[](std::string_view key) {
  if (!isObject()) *this = object();
  auto& members = *std::get<std::unique_ptr<Object>>(value_);
  const auto place = members.lower_bound(key);
  if (place != members.end() && place->first == key) return place->second;
  return members.emplace_hint(place, key, Json())->second;
}

void Json::remove(std::string_view key) {
  auto* const object = std::get_if<std::unique_ptr<Object>>(&value_);
  if (object == nullptr) return;
  if (const auto found = (*object)->find(key); found != (*object)->end()) (*object)->erase(found);
}

Json& Json::append(Json element) {
  if (!isArray()) *this = array();
  return std::get<std::unique_ptr<Array>>(value_)->emplace_back(std::move(element));
}

bool operator==(const Json& left, const Json& right) {
  if (left.value_.index() != right.value_.index()) {
    const auto number = left.number();
    return number && number == right.number();
  }
  return std::visit(
      [&right]<class Held>(const Held& held) {
        const auto& other = std::get<Held>(right.value_);
        if constexpr (isHeldByPointer<Held>)
          return *held == *other;
        else
          return held == other;
      },
      left.value_);
}

Json parsedJson(std::string_view text) {
  return read(text, deepestAnywhere, false).value_or(Json());
}

std::expected<Json, JsonFault> strictlyParsedJson(std::string_view text, std::size_t deepest) {
  return read(text, deepest, true);
}

std::string jsonText(const Json& value, JsonCharacters characters, int indentation) {
  return forLibrary(value).dump(indentation, ' ', characters == JsonCharacters::ascii,
                                nlohmann::json::error_handler_t::replace);
}

}  // namespace murmel
