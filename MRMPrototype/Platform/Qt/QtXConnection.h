#pragma once

#include <QGuiApplication>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace murmel {

template <class T>
using XReply = std::unique_ptr<T, decltype(&std::free)>;

template <class T>
XReply<T> ownReply(T* reply) {
  return {reply, &std::free};
}

/// The connection of Qt's windows. Null off X, and on Qt's platforms that have none.
inline xcb_connection_t* qtXConnection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

/// None when the connection is broken.
inline xcb_atom_t atomNamed(xcb_connection_t* connection, std::string_view name) {
  const auto asking =
      xcb_intern_atom(connection, /*only_if_exists=*/0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = ownReply(xcb_intern_atom_reply(connection, asking, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// None when nobody owns it.
inline xcb_window_t selectionOwner(xcb_connection_t* connection, xcb_atom_t selection) {
  const auto asking = xcb_get_selection_owner(connection, selection);
  const auto reply = ownReply(xcb_get_selection_owner_reply(connection, asking, nullptr));
  return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

}  // namespace murmel
