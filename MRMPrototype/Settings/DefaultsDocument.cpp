#include "Settings/DefaultsDocument.h"

#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <fmt/core.h>

namespace murmel {

namespace {

constexpr std::string_view dataKey = "$data";
constexpr std::size_t deepestNesting = 64;
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
  for (const auto& element : json.elements()) {
    auto text = element.text();
    if (!text) return std::nullopt;
    strings.push_back(*std::move(text));
  }
  return strings;
}

std::optional<DefaultsValue> data(const Json& json) {
  const auto text = json[dataKey].view();
  if (!text || json.size() != 1) return std::nullopt;
  auto bytes = base64::decoded(*text);
  if (!bytes) return std::nullopt;
  return std::move(*bytes);
}

std::optional<DefaultsValue> fromJson(const Json& json) {
  if (const auto boolean = json.boolean()) return *boolean;
  if (const auto integer = json.integer()) return *integer;
  if (json.unsignedInteger()) return std::nullopt;  // beyond what a setting holds
  if (const auto number = json.number()) return *number;
  if (auto text = json.text()) return *std::move(text);
  if (json.isArray()) return stringArray(json);
  return data(json);
}

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
  using Fault = JsonFault::Kind;
  auto json = strictlyParsedJson(text, deepestNesting);
  if (!json) {
    const auto& fault = json.error();
    if (fault.kind == Fault::malformed) return std::unexpected(complaint(text, fault.byte));
    if (fault.kind == Fault::numberTooLarge) return std::unexpected("it has a number that is too large");
    if (fault.kind == Fault::repeatedKey) return std::unexpected("it names \"" + fault.key + "\" twice");
  }
  if (!json || !json->isObject()) return std::unexpected("it is not one object in braces");
  DefaultsDocument document;
  document.members_->object = *std::move(json);
  return document;
}

std::string DefaultsDocument::text() const {
  return jsonText(members_->object, JsonCharacters::utf8, indentation) + "\n";
}

std::optional<DefaultsValue> DefaultsDocument::value(std::string_view key) const {
  return fromJson(std::as_const(members_->object)[key]);
}

bool DefaultsDocument::contains(std::string_view key) const {
  return members_->object.contains(key);
}

void DefaultsDocument::set(std::string_view key, const DefaultsValue& value) {
  members_->object[key] = toJson(value);
}

void DefaultsDocument::remove(std::string_view key) {
  members_->object.remove(key);
}

}  // namespace murmel
