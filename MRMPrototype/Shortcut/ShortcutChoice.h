#pragma once

#include "Foundation/RawValue.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <string_view>

namespace murmel {

/// The shortcuts that the settings offer ready-made.
enum class ShortcutChoice {
  functionKey,
  optionKey,
  doubleTapOption,
  capsLock,
  controlKey,
  disabled,
  commandShiftD,
  optionSpace,
  controlSpace,
};

template <>
inline constexpr auto rawValueTable<ShortcutChoice> = std::to_array<RawValueRow<ShortcutChoice>>({
    {ShortcutChoice::functionKey, "functionKey"},
    {ShortcutChoice::optionKey, "optionKey"},
    {ShortcutChoice::doubleTapOption, "doubleTapOption"},
    {ShortcutChoice::capsLock, "capsLock"},
    {ShortcutChoice::controlKey, "controlKey"},
    {ShortcutChoice::disabled, "disabled"},
    {ShortcutChoice::commandShiftD, "commandShiftD"},
    {ShortcutChoice::optionSpace, "optionSpace"},
    {ShortcutChoice::controlSpace, "controlSpace"},
});

/// Identifies a choice in a list.
constexpr std::string_view id(ShortcutChoice choice) {
  return rawValue(choice);
}

ShortcutConfiguration configuration(ShortcutChoice choice);

}  // namespace murmel
