#include "Shortcut/ShortcutConfiguration.h"

#include "Foundation/Json/Json.h"
#include "Foundation/Text/Text.h"
#include "Platform/KeyModifiers.h"

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
  if (!text::isValidUtf8(keyLabel)) return std::nullopt;
  // The members in this order.
  const auto member = [](const char* key, const Json& value) {
    return jsonText(key) + ':' + jsonText(value);
  };
  return '{' + member(kindKey, rawValue(kind)) + ',' + member(keyCodeKey, keyCode) + ',' +
         member(modifierRawValueKey, modifierRawValue) + ',' + member(keyLabelKey, keyLabel) + '}';
}

std::optional<ShortcutConfiguration> ShortcutConfiguration::fromJson(std::string_view json) {
  const auto object = parsedJson(json);
  const auto kindName = object[kindKey].text();
  const auto kind = kindName ? fromRawValue<Kind>(*kindName) : std::nullopt;
  const auto keyCode = object[keyCodeKey].unsignedInteger();
  const auto modifiers = object[modifierRawValueKey].unsignedInteger();
  auto label = object[keyLabelKey].text();
  if (!kind || !keyCode || !std::in_range<VirtualKeyCode>(*keyCode) || !modifiers || !label)
    return std::nullopt;
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
