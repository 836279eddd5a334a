#include "Platform/Linux/X11/X11KeyboardMap.h"

#include <algorithm>
#include <span>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>
// The header names a member with a word that C++ reserves.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace murmel {

namespace {

constexpr std::uint16_t coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

}  // namespace

std::unique_ptr<X11KeyboardMap> X11KeyboardMap::open(X11Connection& connection) {
  std::uint8_t event = 0;
  const auto hasExtension = xkb_x11_setup_xkb_extension(
      connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
      XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &event, nullptr);
  const auto device = hasExtension != 0 ? xkb_x11_get_core_keyboard_device_id(connection.get()) : -1;
  if (device < 0) return nullptr;
  constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  constexpr std::uint16_t parts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                  XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
  xcb_xkb_select_events(connection.get(), coreKeyboard, events, 0, events, parts, parts, nullptr);
  return std::unique_ptr<X11KeyboardMap>(new X11KeyboardMap(connection, device, event));
}

X11KeyboardMap::X11KeyboardMap(X11Connection& connection, std::int32_t device, std::uint8_t event)
    : connection_(connection),
      device_(device),
      event_(event),
      context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
  refresh();  // now rather than at the first paste
}

X11KeyboardMap::~X11KeyboardMap() {
  xkb_keymap_unref(keymap_);
  xkb_context_unref(context_);
}

/// Fetching the map takes some milliseconds: only when the server has told of a change.
void X11KeyboardMap::refresh() {
  while (const auto event = connection_.nextEvent()) {
    if ((event->response_type & 0x7F) == event_) isStale_ = true;
  }
  if (!isStale_ && keymap_ != nullptr) return;
  xkb_keymap_unref(keymap_);
  keymap_ = xkb_x11_keymap_new_from_device(context_, connection_.get(), device_, XKB_KEYMAP_COMPILE_NO_FLAGS);
  isStale_ = keymap_ == nullptr;
}

bool X11KeyboardMap::gives(xkb_keycode_t key, xkb_layout_index_t group, xkb_keysym_t symbol) const {
  const xkb_keysym_t* symbols = nullptr;
  const auto count = xkb_keymap_key_get_syms_by_level(keymap_, key, group, 0, &symbols);
  return count == 1 && symbols[0] == symbol;
}

std::optional<X11Key> X11KeyboardMap::keyFor(xkb_keysym_t symbol) {
  // The answer comes after the news of every change of the map before it.
  const auto state = x11Reply(connection_.get(), xcb_xkb_get_state_reply,
                              xcb_xkb_get_state(connection_.get(), coreKeyboard));
  refresh();
  if (!state || keymap_ == nullptr) return std::nullopt;
  const auto first = xkb_keymap_min_keycode(keymap_);
  const auto last = xkb_keymap_max_keycode(keymap_);
  std::optional<X11Key> elsewhere;
  for (auto key = first; key <= last; ++key) {
    const auto groups = xkb_keymap_num_layouts_for_key(keymap_, key);
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
      if (!gives(key, group, symbol)) continue;
      // Keys with fewer groups than the keyboard give their last one for the others.
      const bool isActive = group == std::min<xkb_layout_index_t>(state->group, groups - 1);
      if (isActive) return X11Key{static_cast<xcb_keycode_t>(key), std::nullopt};
      if (!elsewhere) elsewhere = {static_cast<xcb_keycode_t>(key), static_cast<std::uint8_t>(group)};
    }
  }
  return elsewhere;
}

std::optional<std::uint8_t> X11KeyboardMap::exchangeGroup(std::uint8_t group) {
  const auto state = x11Reply(connection_.get(), xcb_xkb_get_state_reply,
                              xcb_xkb_get_state(connection_.get(), coreKeyboard));
  if (!state) return std::nullopt;
  xcb_xkb_latch_lock_state(connection_.get(), coreKeyboard, 0, 0, 1, group, 0, 0, 0);
  return state->lockedGroup;
}

std::optional<xcb_keycode_t> X11KeyboardMap::keyWithoutSymbol() {
  refresh();
  if (keymap_ == nullptr) return std::nullopt;
  // From the end: the numbers of real keys are low.
  for (auto key = xkb_keymap_max_keycode(keymap_); key > xkb_keymap_min_keycode(keymap_); --key) {
    if (xkb_keymap_num_layouts_for_key(keymap_, key) == 0) return static_cast<xcb_keycode_t>(key);
  }
  return std::nullopt;
}

/// Some modifier keys stand in no row of the modifier map: a right Alt that is AltGr acts through another key
/// of the same symbol there.
bool X11KeyboardMap::isNamedModifier(xkb_keycode_t key) const {
  constexpr xkb_keysym_t named[] = {
      XKB_KEY_Shift_L,          XKB_KEY_Shift_R,          XKB_KEY_Control_L,  XKB_KEY_Control_R,
      XKB_KEY_Meta_L,           XKB_KEY_Meta_R,           XKB_KEY_Alt_L,      XKB_KEY_Alt_R,
      XKB_KEY_Super_L,          XKB_KEY_Super_R,          XKB_KEY_Hyper_L,    XKB_KEY_Hyper_R,
      XKB_KEY_ISO_Level3_Shift, XKB_KEY_ISO_Level5_Shift, XKB_KEY_Mode_switch};
  return std::ranges::any_of(named, [&](xkb_keysym_t symbol) { return gives(key, 0, symbol); });
}

bool X11KeyboardMap::isLock(xkb_keycode_t key) const {
  constexpr xkb_keysym_t locks[] = {XKB_KEY_Caps_Lock, XKB_KEY_Shift_Lock, XKB_KEY_Num_Lock,
                                    XKB_KEY_Scroll_Lock, XKB_KEY_ISO_Level3_Lock};
  return std::ranges::any_of(locks, [&](xkb_keysym_t lock) { return gives(key, 0, lock); });
}

std::vector<X11HeldModifier> X11KeyboardMap::heldModifiers() {
  auto* connection = connection_.get();
  const auto keysCookie = xcb_query_keymap(connection);
  const auto modifiersCookie = xcb_get_modifier_mapping(connection);
  const auto keys = x11Reply(connection, xcb_query_keymap_reply, keysCookie);
  const auto modifiers = x11Reply(connection, xcb_get_modifier_mapping_reply, modifiersCookie);
  refresh();
  std::vector<X11HeldModifier> held;
  if (!keys || !modifiers || keymap_ == nullptr) return held;
  const auto* codes = xcb_get_modifier_mapping_keycodes(modifiers.get());
  const std::span mapped(codes,
                         static_cast<std::size_t>(xcb_get_modifier_mapping_keycodes_length(modifiers.get())));
  constexpr int lowestKeyCode = 8;
  constexpr int highestKeyCode = 255;
  for (int number = lowestKeyCode; number <= highestKeyCode; ++number) {
    const auto code = static_cast<xcb_keycode_t>(number);
    if ((keys->keys[code / 8] >> (code % 8) & 1) == 0 || isLock(code)) continue;
    std::uint16_t bits = 0;
    for (std::size_t place = 0; place < mapped.size(); ++place)
      if (mapped[place] == code)
        bits |= static_cast<std::uint16_t>(1U << (place / modifiers->keycodes_per_modifier));
    if (bits != 0 || isNamedModifier(code)) held.push_back({code, bits});
  }
  return held;
}

}  // namespace murmel
