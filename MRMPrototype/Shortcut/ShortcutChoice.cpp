#include "Shortcut/ShortcutChoice.h"

#include "Platform/KeyModifiers.h"

namespace murmel {

ShortcutConfiguration configuration(ShortcutChoice choice) {
  using enum ShortcutConfiguration::Kind;
  switch (choice) {
    case ShortcutChoice::functionKey:
      return {modifiersOnly, virtualKey::function, keyModifier::function, "Fn"};
    case ShortcutChoice::optionKey:
      return {modifiersOnly, virtualKey::leftOption, keyModifier::option, "Option"};
    case ShortcutChoice::doubleTapOption:
      return {doubleTapModifier, virtualKey::leftOption, keyModifier::option, "Option"};
    case ShortcutChoice::capsLock:
      return {capsLock, virtualKey::capsLock, 0, "Caps Lock"};
    case ShortcutChoice::controlKey:
      return {modifiersOnly, virtualKey::leftControl, keyModifier::control, "Control"};
    case ShortcutChoice::disabled:
      return {disabled, 0, 0, ""};
    case ShortcutChoice::commandShiftD:
      return {key, virtualKey::d, keyModifier::command | keyModifier::shift, "D"};
    case ShortcutChoice::optionSpace:
      return {key, virtualKey::space, keyModifier::option, "Space"};
    case ShortcutChoice::controlSpace:
      return {key, virtualKey::space, keyModifier::control, "Space"};
  }
  return {disabled, 0, 0, ""};
}

std::vector<ShortcutChoice> offeredChoices(
    const std::function<bool(const ShortcutConfiguration&)>& canBeHeard) {
  std::vector<ShortcutChoice> offered;
  for (const auto choice : allCases<ShortcutChoice>()) {
    if (choice == ShortcutChoice::disabled || !canBeHeard || canBeHeard(configuration(choice)))
      offered.push_back(choice);
  }
  return offered;
}

}  // namespace murmel
