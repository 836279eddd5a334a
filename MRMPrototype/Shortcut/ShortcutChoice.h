#pragma once

#include "Foundation/RawValue.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <functional>
#include <string_view>
#include <vector>

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

/// Those that this desktop can hear, and the disabled one. An empty predicate: all.
std::vector<ShortcutChoice> offeredChoices(
    const std::function<bool(const ShortcutConfiguration&)>& canBeHeard);

}  // namespace murmel
