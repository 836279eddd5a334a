#include "Shortcut/ShortcutConfiguration.h"

#include "Foundation/Json/Json.h"
#include "Platform/KeyModifiers.h"

#include <limits>
#include <utility>

namespace murmel {

namespace {

constexpr const char* kindKey = "kind";
constexpr const char* keyCodeKey = "keyCode";
constexpr const char* modifierRawValueKey = "modifierRawValue";
constexpr const char* keyLabelKey = "keyLabel";

constexpr std::pair<std::uint64_t, std::string_view> symbolsInTitleOrder[] = {
    {keyModifier::control, "⌃"}, {keyModifier::option, "⌥"},    {keyModifier::shift, "⇧"},
    {keyModifier::command, "⌘"}, {keyModifier::function, "Fn"},
};

std::optional<std::uint64_t> unsignedField(const nlohmann::json& object, const char* key,
                                           std::uint64_t highest) {
  const auto field = object.find(key);
  if (field == object.end() || !field->is_number_unsigned()) return std::nullopt;
  const auto value = field->get<std::uint64_t>();
  if (value > highest) return std::nullopt;
  return value;
}

std::optional<std::string> stringField(const nlohmann::json& object, const char* key) {
  const auto field = object.find(key);
  if (field == object.end() || !field->is_string()) return std::nullopt;
  return field->get<std::string>();
}

}  // namespace

std::string ShortcutConfiguration::title() const {
  switch (kind) {
    case Kind::capsLock:
      return "Caps Lock";
    case Kind::disabled:
      return "No shortcut";
    case Kind::doubleTapModifier:
      return "Double tap Option";
    case Kind::key:
    case Kind::modifiersOnly:
      break;
  }
  std::string title;
  for (const auto& [flag, symbol] : symbolsInTitleOrder) {
    if ((modifierRawValue & flag) != 0) title += symbol;
  }
  if (kind == Kind::key) title += keyLabel;
  return title.empty() ? "Not configured" : title;
}

std::optional<std::string> ShortcutConfiguration::toJson() const {
  const nlohmann::ordered_json object{{kindKey, rawValue(kind)},
                                      {keyCodeKey, keyCode},
                                      {modifierRawValueKey, modifierRawValue},
                                      {keyLabelKey, keyLabel}};
  try {
    return object.dump();
  } catch (const nlohmann::json::type_error&) {  // the library's word for ill-formed UTF-8
    return std::nullopt;
  }
}

std::optional<ShortcutConfiguration> ShortcutConfiguration::fromJson(std::string_view json) {
  const auto object = parsedJson(json);
  if (!object.is_object()) return std::nullopt;
  const auto kindName = stringField(object, kindKey);
  const auto kind = kindName ? fromRawValue<Kind>(*kindName) : std::nullopt;
  const auto keyCode = unsignedField(object, keyCodeKey, std::numeric_limits<VirtualKeyCode>::max());
  const auto modifiers =
      unsignedField(object, modifierRawValueKey, std::numeric_limits<std::uint64_t>::max());
  auto label = stringField(object, keyLabelKey);
  if (!kind || !keyCode || !modifiers || !label) return std::nullopt;
  return ShortcutConfiguration{*kind, static_cast<VirtualKeyCode>(*keyCode), *modifiers, *std::move(label)};
}

}  // namespace murmel

std::size_t std::hash<murmel::ShortcutConfiguration>::operator()(
    const murmel::ShortcutConfiguration& shortcut) const noexcept {
  std::size_t result = std::hash<std::string>{}(shortcut.keyLabel);
  const auto mix = [&result](std::uint64_t value) {
    // The golden ratio's bits spread neighbouring values.
    result ^= std::hash<std::uint64_t>{}(value) + 0x9E3779B97F4A7C15U + (result << 6U) + (result >> 2U);
  };
  mix(static_cast<std::uint64_t>(shortcut.kind));
  mix(shortcut.keyCode);
  mix(shortcut.modifierRawValue);
  return result;
}
