#include "Platform/Linux/X11Keys/KeyLayout.h"

#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"

#include <array>
#include <utility>

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

xkb_keysym_t KeyLayout::symbol(std::uint32_t keyCode) const {
  const auto group = xkb_state_key_get_layout(state_.get(), keyCode);
  if (group != XKB_LAYOUT_INVALID) {
    // The first level: Alt with Shift may read Meta, and is still Alt.
    const xkb_keysym_t* symbols = nullptr;
    if (xkb_keymap_key_get_syms_by_level(keymap_.get(), keyCode, group, 0, &symbols) > 0) return *symbols;
  }
  return XKB_KEY_NoSymbol;
}

KeyRole KeyLayout::role(std::uint32_t keyCode) const {
  const auto role = keyRole(symbol(keyCode), keyCode - xKeyCodeOffset);
  if (role.kind != KeyRole::Kind::capsLock) return role;
  // The key may be called Caps Lock and still act as another modifier ("caps:ctrl_modifier").
  constexpr auto acted = std::to_array<std::pair<std::uint64_t, VirtualKeyCode>>({
      {keyModifier::control, virtualKey::leftControl},
      {keyModifier::option, virtualKey::leftOption},
      {keyModifier::command, virtualKey::leftCommand},
      {keyModifier::shift, virtualKey::leftShift},
  });
  const auto set = modifiersSetBy(keyCode);
  for (const auto& [flag, actedKey] : acted) {
    if ((set & flag) != 0) return {KeyRole::Kind::modifier, actedKey, flag};
  }
  return role;
}

std::string KeyLayout::characters(std::uint32_t keyCode) const {
  if (const auto called = symbol(keyCode); called >= XKB_KEY_F1 && called <= XKB_KEY_F35)
    return "F" + std::to_string(called - XKB_KEY_F1 + 1);
  constexpr std::size_t longest = 8;  // with the final zero
  std::array<char, longest> buffer{};
  const auto found = symbol(keyCode);
  const int written = xkb_keysym_to_utf8(found, buffer.data(), buffer.size());
  const bool isControl = static_cast<unsigned char>(buffer.front()) <= ' ';
  return written <= 1 || isControl ? std::string() : std::string(buffer.data());
}

std::uint64_t KeyLayout::flagsOf(std::uint32_t modifiers) const {
  constexpr auto names = std::to_array<std::pair<const char*, std::uint64_t>>({
      {XKB_MOD_NAME_SHIFT, keyModifier::shift},
      {XKB_MOD_NAME_CTRL, keyModifier::control},
      {XKB_MOD_NAME_ALT, keyModifier::option},
      {XKB_MOD_NAME_LOGO, keyModifier::command},
  });
  std::uint64_t flags = 0;
  for (const auto& [name, flag] : names) {
    const auto index = xkb_keymap_mod_get_index(keymap_.get(), name);
    if (index != XKB_MOD_INVALID && ((modifiers >> index) & 1U) != 0) flags |= flag;
  }
  return flags;
}

std::uint64_t KeyLayout::modifiersSetBy(std::uint32_t keyCode) const {
  const std::unique_ptr<xkb_state, StateDeleter> trial(xkb_state_new(keymap_.get()));
  if (!trial) return 0;
  xkb_state_update_key(trial.get(), keyCode, XKB_KEY_DOWN);
  return flagsOf(xkb_state_serialize_mods(trial.get(), XKB_STATE_MODS_DEPRESSED));
}

std::uint64_t KeyLayout::stuckModifiers() const {
  return flagsOf(xkb_state_serialize_mods(
      state_.get(), static_cast<xkb_state_component>(XKB_STATE_MODS_LATCHED | XKB_STATE_MODS_LOCKED)));
}

bool KeyLayout::capsLockIsOn() const {
  return xkb_state_mod_name_is_active(state_.get(), XKB_MOD_NAME_CAPS, XKB_STATE_MODS_LOCKED) > 0;
}

}  // namespace murmel
