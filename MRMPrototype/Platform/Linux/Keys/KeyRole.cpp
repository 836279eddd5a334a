#include "Platform/Linux/Keys/KeyRole.h"

#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"

#include <xkbcommon/xkbcommon-keysyms.h>

namespace murmel {

namespace {

constexpr KeyRole modifier(VirtualKeyCode keyCode, std::uint64_t flag) {
  return {KeyRole::Kind::modifier, keyCode, flag};
}

/// Keys that choose a level or a group of the layout, AltGr among them: they change what other keys write,
/// but are none of the modifiers that shortcuts know.
bool choosesLevelOrGroup(std::uint32_t symbol) {
  return (symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_ISO_Level5_Lock) || symbol == XKB_KEY_Mode_switch ||
         symbol == XKB_KEY_Shift_Lock;
}

bool isModifierCode(VirtualKeyCode keyCode) {
  return keyCode >= virtualKey::rightCommand && keyCode <= virtualKey::function;
}

}  // namespace

KeyRole keyRole(std::uint32_t symbol, std::uint32_t evdevCode) {
  switch (symbol) {
    case XKB_KEY_Shift_L:
      return modifier(virtualKey::leftShift, keyModifier::shift);
    case XKB_KEY_Shift_R:
      return modifier(virtualKey::rightShift, keyModifier::shift);
    case XKB_KEY_Control_L:
      return modifier(virtualKey::leftControl, keyModifier::control);
    case XKB_KEY_Control_R:
      return modifier(virtualKey::rightControl, keyModifier::control);
    case XKB_KEY_Alt_L:
      return modifier(virtualKey::leftOption, keyModifier::option);
    case XKB_KEY_Alt_R:
      return modifier(virtualKey::rightOption, keyModifier::option);
    case XKB_KEY_Super_L:
    case XKB_KEY_Hyper_L:
    case XKB_KEY_Meta_L:
      return modifier(virtualKey::leftCommand, keyModifier::command);
    case XKB_KEY_Super_R:
    case XKB_KEY_Hyper_R:
    case XKB_KEY_Meta_R:
      return modifier(virtualKey::rightCommand, keyModifier::command);
    case XKB_KEY_XF86Fn:
    case XKB_KEY_XF86WakeUp:  // what the Fn key of many laptops sends; X cannot carry KEY_FN itself
      return modifier(virtualKey::function, keyModifier::function);
    case XKB_KEY_Caps_Lock:
      return {KeyRole::Kind::capsLock, virtualKey::capsLock, 0};
    default:
      break;
  }
  if (choosesLevelOrGroup(symbol)) return modifier(virtualKeyWithoutCounterpart(evdevCode), 0);
  const auto place = virtualKeyFromEvdev(evdevCode);
  // A modifier's place with something else on it must not pass for the modifier.
  return {KeyRole::Kind::ordinary, isModifierCode(place) ? virtualKeyWithoutCounterpart(evdevCode) : place,
          0};
}

}  // namespace murmel
