#pragma once

#include "Foundation/RawValue.h"
#include "Platform/VirtualKeyCode.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// The dictation shortcut as the user chose or recorded it.
struct ShortcutConfiguration {
  enum class Kind {
    key,                ///< a key with modifiers, held
    modifiersOnly,      ///< one or more modifier keys, held alone
    doubleTapModifier,  ///< tapped twice to start, and again to stop
    capsLock,           ///< pressed once to start, and again to stop
    disabled,
  };

  Kind kind = Kind::disabled;
  /// For `modifiersOnly` the modifier key that produced the chord.
  VirtualKeyCode keyCode = 0;
  /// Within `shortcutModifierMask`.
  std::uint64_t modifierRawValue = 0;
  /// What is written on the key (UTF-8), for the title.
  std::string keyLabel;

  /// What the settings and the recorder show.
  [[nodiscard]] std::string title() const;

  /// A JSON object with the fields' names as keys. Nothing when the label is not UTF-8.
  [[nodiscard]] std::optional<std::string> toJson() const;
  /// Nothing unless `json` is an object with all four fields, each in the range of its type, and a known
  /// kind; further keys are ignored. The modifiers are taken as they stand.
  [[nodiscard]] static std::optional<ShortcutConfiguration> fromJson(std::string_view json);

  friend bool operator==(const ShortcutConfiguration&, const ShortcutConfiguration&) = default;
};

template <>
inline constexpr auto rawValueTable<ShortcutConfiguration::Kind> =
    std::to_array<RawValueRow<ShortcutConfiguration::Kind>>({
        {ShortcutConfiguration::Kind::key, "key"},
        {ShortcutConfiguration::Kind::modifiersOnly, "modifiersOnly"},
        {ShortcutConfiguration::Kind::doubleTapModifier, "doubleTapModifier"},
        {ShortcutConfiguration::Kind::capsLock, "capsLock"},
        {ShortcutConfiguration::Kind::disabled, "disabled"},
    });

}  // namespace murmel

template <>
struct std::hash<murmel::ShortcutConfiguration> {
  std::size_t operator()(const murmel::ShortcutConfiguration& shortcut) const noexcept;
};
