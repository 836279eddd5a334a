#include "Platform/Linux/X11Keys/X11KeyboardProbe.h"

#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"
#include "Platform/Linux/X11Keys/X11KeyConnection.h"

#include <linux/input-event-codes.h>

namespace murmel {

namespace {

constexpr std::uint32_t lastKeyCode = 255;

/// X's code of the key; 0 when X cannot carry it.
xcb_keycode_t keyCodeOf(VirtualKeyCode keyCode) {
  for (std::uint32_t code = xKeyCodeOffset; code <= lastKeyCode; ++code) {
    if (virtualKeyFromEvdev(code - xKeyCodeOffset) == keyCode) return static_cast<xcb_keycode_t>(code);
  }
  return 0;
}

std::optional<KeyLayout> layoutOf(const std::string& display) {
  const auto connection = X11KeyConnection::open(display);
  return connection ? (*connection)->readLayout() : std::nullopt;
}

}  // namespace

bool X11KeyboardProbe::isTaken(VirtualKeyCode keyCode, std::uint64_t modifiers) {
  const auto code = keyCodeOf(keyCode);
  if (code == 0) return false;
  // The usual places of the modifiers; window managers reserve their keys there too.
  std::uint16_t mask = 0;
  if ((modifiers & keyModifier::shift) != 0) mask |= XCB_MOD_MASK_SHIFT;
  if ((modifiers & keyModifier::control) != 0) mask |= XCB_MOD_MASK_CONTROL;
  if ((modifiers & keyModifier::option) != 0) mask |= XCB_MOD_MASK_1;
  if ((modifiers & keyModifier::command) != 0) mask |= XCB_MOD_MASK_4;
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
      xcb_connect(display_.empty() ? nullptr : display_.c_str(), nullptr), &xcb_disconnect);
  if (xcb_connection_has_error(connection.get()) != 0) return false;
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
  // Reserved for the length of a round trip: the connection's end gives it back.
  const auto asking =
      xcb_grab_key_checked(connection.get(), 0, root, mask, code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const std::unique_ptr<xcb_generic_error_t, FreeDeleter> error(xcb_request_check(connection.get(), asking));
  return error && error->error_code == XCB_ACCESS;
}

bool X11KeyboardProbe::capsLockIsRemapped() {
  const auto layout = layoutOf(display_);
  return layout && layout->role(KEY_CAPSLOCK + xKeyCodeOffset).kind != KeyRole::Kind::capsLock;
}

std::string X11KeyboardProbe::label(VirtualKeyCode keyCode) {
  const auto code = keyCodeOf(keyCode);
  const auto layout = code == 0 ? std::nullopt : layoutOf(display_);
  return layout ? layout->characters(code) : std::string();
}

}  // namespace murmel
