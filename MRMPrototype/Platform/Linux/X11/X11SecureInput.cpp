#include "Platform/Linux/X11/X11SecureInput.h"

#include <utility>

namespace murmel {

bool isKeyboardGrabbed(X11Connection& connection, xcb_window_t hiddenWindow) {
  // A grab on behalf of a window that is not shown never succeeds, so nobody notices the attempt; but the
  // server first says whether somebody else has the keyboard.
  const auto cookie = xcb_grab_keyboard(connection.get(), 0, hiddenWindow, XCB_CURRENT_TIME,
                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const auto reply = x11Reply(connection.get(), xcb_grab_keyboard_reply, cookie);
  return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

std::expected<std::unique_ptr<X11SecureInput>, std::string> X11SecureInput::open(const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return std::unexpected(connection.error());
  return std::unique_ptr<X11SecureInput>(new X11SecureInput(*std::move(connection)));
}

X11SecureInput::X11SecureInput(std::unique_ptr<X11Connection> connection)
    : connection_(std::move(connection)),
      hiddenWindow_(connection_->createHiddenWindow(XCB_EVENT_MASK_NO_EVENT)) {}

}  // namespace murmel
