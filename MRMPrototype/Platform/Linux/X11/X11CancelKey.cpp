#include "Platform/Linux/X11/X11CancelKey.h"

#include <utility>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace murmel {

namespace {

constexpr std::uint16_t modifierMasks = 1U << 8;

}  // namespace

std::expected<std::unique_ptr<X11CancelKey>, std::string> X11CancelKey::open(Executor& executor,
                                                                             const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return std::unexpected(connection.error());
  return std::unique_ptr<X11CancelKey>(new X11CancelKey(executor, *std::move(connection)));
}

X11CancelKey::X11CancelKey(Executor& executor, std::unique_ptr<X11Connection> connection)
    : executor_(executor),
      connection_(std::move(connection)),
      keyboard_(X11KeyboardMap::open(*connection_)),
      watch_(executor_.watchReadable(connection_->descriptor(), [this] { drain(); })) {}

Registration X11CancelKey::take(std::function<void()> pressed) {
  // The layout may have changed since the last time.
  const auto found = keyboard_ ? keyboard_->keyFor(XKB_KEY_Escape) : std::nullopt;
  if (!found) return {};
  const auto key = found->code;
  if (!grab(key, XCB_MOD_MASK_ANY)) {
    // Somebody has it with some modifiers, as window managers do: the other combinations are free.
    for (std::uint16_t mask = 0; mask < modifierMasks; ++mask)
      xcb_grab_key(connection_->get(), 0, connection_->root(), mask, key, XCB_GRAB_MODE_ASYNC,
                   XCB_GRAB_MODE_ASYNC);
  }
  xcb_flush(connection_->get());
  pressed_ = std::move(pressed);
  // Errors and events that came with the answers do not make the descriptor readable again.
  executor_.post([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) drain();
  });
  return Registration([this, key] {
    pressed_ = nullptr;
    xcb_ungrab_key(connection_->get(), key, connection_->root(), XCB_MOD_MASK_ANY);
    xcb_flush(connection_->get());
  });
}

bool X11CancelKey::grab(xcb_keycode_t key, std::uint16_t modifiers) {
  const auto cookie = xcb_grab_key_checked(connection_->get(), 0, connection_->root(), modifiers, key,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const X11Reply<xcb_generic_error_t> error(xcb_request_check(connection_->get(), cookie));
  return !error;
}

void X11CancelKey::drain() {
  // A server that is gone would make the descriptor readable without end.
  if (connection_->hasFailed()) watch_.reset();
  while (const auto event = connection_->nextEvent()) {
    constexpr std::uint8_t sentByAClient = 0x80;
    // What another client only claims is no key.
    if (event->response_type != XCB_KEY_PRESS || (event->response_type & sentByAClient) != 0) continue;
    if (const auto pressed = pressed_) pressed();
  }
}

}  // namespace murmel
