#include "Platform/Linux/X11Keys/KeyLayout.h"

#include "Platform/KeyModifiers.h"
#include "Platform/Linux/X11Keys/EvdevKeyTable.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace murmel {

namespace {

constexpr KeyRole modifier(VirtualKeyCode keyCode, std::uint64_t flag) {
  return {KeyRole::Kind::modifier, keyCode, flag};
}

/// Keys that choose a level or a group of the layout, AltGr among them: they change what other keys write,
/// but are none of the modifiers that shortcuts know.
bool choosesLevelOrGroup(xkb_keysym_t symbol) {
  return (symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_ISO_Level5_Lock) || symbol == XKB_KEY_Mode_switch ||
         symbol == XKB_KEY_Shift_Lock;
}

bool isModifierCode(VirtualKeyCode keyCode) {
  return keyCode >= virtualKey::rightCommand && keyCode <= virtualKey::function;
}

}  // namespace

void KeyLayout::KeymapDeleter::operator()(xkb_keymap* keymap) const {
  xkb_keymap_unref(keymap);
}

void KeyLayout::StateDeleter::operator()(xkb_state* state) const {
  xkb_state_unref(state);
}

KeyLayout::KeyLayout(xkb_keymap* keymap, xkb_state* state) : keymap_(keymap), state_(state) {}

std::optional<KeyLayout> KeyLayout::named(const std::string& layout, const std::string& variant,
                                          const std::string& options) {
  xkb_context* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  if (context == nullptr) return std::nullopt;
  // "complain about nothing": the library's default is to write to standard error.
  xkb_context_set_log_fn(context, [](xkb_context*, xkb_log_level, const char*, va_list) {});
  const xkb_rule_names names{"evdev", "pc105", layout.c_str(), variant.c_str(), options.c_str()};
  xkb_keymap* keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
  xkb_context_unref(context);
  if (keymap == nullptr) return std::nullopt;
  xkb_state* state = xkb_state_new(keymap);
  if (state == nullptr) {
    xkb_keymap_unref(keymap);
    return std::nullopt;
  }
  return KeyLayout(keymap, state);
}

void KeyLayout::update(const State& state) {
  xkb_state_update_mask(state_.get(), state.baseModifiers, state.latchedModifiers, state.lockedModifiers,
                        state.baseGroup, state.latchedGroup, state.lockedGroup);
}

KeyRole KeyLayout::role(std::uint32_t keyCode) const {
  const auto evdevCode = keyCode - xKeyCodeOffset;
  xkb_keysym_t symbol = XKB_KEY_NoSymbol;
  const auto group = xkb_state_key_get_layout(state_.get(), keyCode);
  if (group != XKB_LAYOUT_INVALID) {
    // The first level: Alt with Shift may read Meta, and is still Alt.
    const xkb_keysym_t* symbols = nullptr;
    if (xkb_keymap_key_get_syms_by_level(keymap_.get(), keyCode, group, 0, &symbols) > 0) symbol = *symbols;
  }
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

bool KeyLayout::capsLockIsOn() const {
  return xkb_state_mod_name_is_active(state_.get(), XKB_MOD_NAME_CAPS, XKB_STATE_MODS_LOCKED) > 0;
}

}  // namespace murmel
