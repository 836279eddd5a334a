#include "Platform/Linux/X11/X11ScreenLock.h"

#include "Platform/Linux/X11/X11SecureInput.h"

#include <span>
#include <utility>
#include <vector>

namespace murmel {

namespace {

/// Some lockers leave a line free, so that the server does not stop drawing what is below. Pixels.
constexpr int margin = 4;

}  // namespace

std::expected<std::unique_ptr<X11ScreenLock>, std::string> X11ScreenLock::open(const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return std::unexpected(connection.error());
  return std::unique_ptr<X11ScreenLock>(new X11ScreenLock(*std::move(connection)));
}

X11ScreenLock::X11ScreenLock(std::unique_ptr<X11Connection> connection)
    : connection_(std::move(connection)),
      hiddenWindow_(connection_->createHiddenWindow(XCB_EVENT_MASK_NO_EVENT)) {}

bool X11ScreenLock::isLocked() {
  return isKeyboardGrabbed(*connection_, hiddenWindow_) && isPointerGrabbed() && isScreenCovered();
}

bool X11ScreenLock::isPointerGrabbed() {
  // As with the keyboard: for a window that is not shown the server only says whether it is taken.
  const auto cookie = xcb_grab_pointer(connection_->get(), 0, hiddenWindow_, 0, XCB_GRAB_MODE_ASYNC,
                                       XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
  const auto reply = x11Reply(connection_->get(), xcb_grab_pointer_reply, cookie);
  return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool X11ScreenLock::isScreenCovered() {
  auto* server = connection_->get();
  const auto root = connection_->root();
  const auto screen = x11Reply(server, xcb_get_geometry_reply, xcb_get_geometry(server, root));
  const auto tree = x11Reply(server, xcb_query_tree_reply, xcb_query_tree(server, root));
  if (!screen || !tree) return false;
  const std::span children(xcb_query_tree_children(tree.get()),
                           static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
  // All questions first, so that many windows cost one round trip.
  std::vector<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_geometry_cookie_t>> questions;
  questions.reserve(children.size());
  for (const auto window : children) {
    questions.emplace_back(xcb_get_window_attributes(server, window), xcb_get_geometry(server, window));
  }
  bool covered = false;
  for (const auto& [askedAttributes, askedGeometry] : questions) {
    const auto attributes = x11Reply(server, xcb_get_window_attributes_reply, askedAttributes);
    const auto place = x11Reply(server, xcb_get_geometry_reply, askedGeometry);
    if (!attributes || !place) continue;  // gone meanwhile
    covered = covered || (attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                          attributes->override_redirect != 0 && place->x <= margin && place->y <= margin &&
                          place->x + place->width >= screen->width - margin &&
                          place->y + place->height >= screen->height - margin);
  }
  return covered;
}

}  // namespace murmel
