#include "Platform/Linux/X11Keys/KeyLayout.h"

#include "Platform/Linux/Keys/EvdevKeyTable.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace murmel {

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
  return keyRole(symbol, evdevCode);
}

bool KeyLayout::capsLockIsOn() const {
  return xkb_state_mod_name_is_active(state_.get(), XKB_MOD_NAME_CAPS, XKB_STATE_MODS_LOCKED) > 0;
}

}  // namespace murmel
