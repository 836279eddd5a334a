#include "Settings/DefaultsDocument.h"

#include "Foundation/Crypto/Base64.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace murmel {

namespace {

using Json = nlohmann::json;

constexpr std::string_view dataKey = "$data";
constexpr int deepestNesting = 64;
constexpr int indentation = 2;

template <class... Alternatives>
struct Overloaded : Alternatives... {
  using Alternatives::operator()...;
};

Json toJson(const DefaultsValue& value) {
  return std::visit(Overloaded{[](const std::vector<std::uint8_t>& bytes) {
                                 return Json{{dataKey, base64::encoded(bytes)}};
                               },
                               [](double number) { return Json(std::isfinite(number) ? number : 0.0); },
                               [](const auto& plain) { return Json(plain); }},
                    value);
}

std::optional<DefaultsValue> stringArray(const Json& json) {
  std::vector<std::string> strings;
  for (const auto& element : json) {
    if (!element.is_string()) return std::nullopt;
    strings.push_back(element.get<std::string>());
  }
  return strings;
}

std::optional<DefaultsValue> data(const Json& json) {
  if (json.size() != 1 || !json.contains(dataKey) || !json[dataKey].is_string()) return std::nullopt;
  auto bytes = base64::decoded(json[dataKey].get_ref<const std::string&>());
  if (!bytes) return std::nullopt;
  return std::move(*bytes);
}

std::optional<DefaultsValue> fromJson(const Json& json) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_integer:
      return json.get<std::int64_t>();
    case Json::value_t::number_unsigned: {
      const auto number = json.get<std::uint64_t>();
      if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return std::nullopt;
      return static_cast<std::int64_t>(number);
    }
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::string:
      return json.get<std::string>();
    case Json::value_t::array:
      return stringArray(json);
    case Json::value_t::object:
      return data(json);
    default:
      return std::nullopt;
  }
}

/// Builds the tree and stops at what could not be written back as it was.
class StrictReader {
 public:
  bool operator()(int depth, Json::parse_event_t event, Json& value) {
    if (depth > deepestNesting) good = false;
    if (event == Json::parse_event_t::object_start) keys_.emplace_back();
    if (event == Json::parse_event_t::object_end) keys_.pop_back();
    if (event == Json::parse_event_t::key && !keys_.back().insert(value.get<std::string>()).second) {
      repeated = value.get<std::string>();
      good = false;
    }
    return good;
  }

  bool good = true;
  std::string repeated;

 private:
  std::vector<std::set<std::string>> keys_;
};

/// What is wrong at the reader's stop, `byte` counted from 1. Quotes nothing: a value is nobody's business.
std::string complaint(std::string_view text, std::size_t byte) {
  auto at = std::min(byte == 0 ? 0 : byte - 1, text.size());
  std::string_view what = "the text is not JSON here";
  const auto before = text.substr(0, at).find_last_not_of(" \t\r\n");
  const char stop = at < text.size() ? text[at] : '\0';
  if (at == text.size()) {
    what = "the text ends too early: a bracket or a quotation mark is missing";
  } else if (stop == '/' || stop == '#' || (before != std::string_view::npos && text[before] == '/')) {
    what = "comments are not allowed";
    if (stop != '/' && stop != '#') at = before;
  } else if ((stop == '}' || stop == ']') && before != std::string_view::npos && text[before] == ',') {
    what = "there is a comma too many";
    at = before;
  } else if (stop == '"') {
    what = "a comma or a colon is missing before this";
    if (const auto quote = at > 0 ? text.rfind('"', at - 1) : 0; quote != std::string_view::npos) at = quote;
  }
  const auto head = text.substr(0, at);
  const auto line = std::ranges::count(head, '\n') + 1;
  const auto column = head.size() - (head.rfind('\n') + 1) + 1;  // npos + 1 is 0
  return fmt::format("line {}, column {}: {}", line, column, what);
}

}  // namespace

struct DefaultsDocument::Members {
  Json object = Json::object();
};

DefaultsDocument::DefaultsDocument() : members_(std::make_unique<Members>()) {}
DefaultsDocument::~DefaultsDocument() = default;
DefaultsDocument::DefaultsDocument(DefaultsDocument&&) noexcept = default;
DefaultsDocument& DefaultsDocument::operator=(DefaultsDocument&&) noexcept = default;

std::expected<DefaultsDocument, std::string> DefaultsDocument::parse(std::string_view text) {
  StrictReader reader;
  try {
    auto json = Json::parse(text, std::ref(reader));
    if (!reader.repeated.empty()) return std::unexpected("it names \"" + reader.repeated + "\" twice");
    if (!reader.good || !json.is_object()) return std::unexpected("it is not one object in braces");
    DefaultsDocument document;
    document.members_->object = std::move(json);
    return document;
  } catch (const Json::parse_error& error) {
    return std::unexpected(complaint(text, error.byte));
  } catch (const Json::out_of_range&) {
    return std::unexpected("it has a number that is too large");
  }
}

std::string DefaultsDocument::text() const {
  return members_->object.dump(indentation, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<DefaultsValue> DefaultsDocument::value(std::string_view key) const {
  const auto found = members_->object.find(key);
  if (found == members_->object.end()) return std::nullopt;
  return fromJson(*found);
}

bool DefaultsDocument::contains(std::string_view key) const {
  return members_->object.contains(key);
}

void DefaultsDocument::set(std::string_view key, const DefaultsValue& value) {
  members_->object[std::string(key)] = toJson(value);
}

void DefaultsDocument::remove(std::string_view key) {
  members_->object.erase(std::string(key));
}

}  // namespace murmel
