#include "Interface/Compositing.h"

#include <QGuiApplication>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace murmel {

namespace {

/// Owned by the compositor of the first screen; there are no others any more.
constexpr std::string_view compositorSelection = "_NET_WM_CM_S0";

template <class T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

}  // namespace

bool isComposited() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (x11 == nullptr) return true;
  auto* connection = x11->connection();
  const auto naming =
      xcb_intern_atom(connection, /*only_if_exists=*/0,
                      static_cast<std::uint16_t>(compositorSelection.size()), compositorSelection.data());
  const Reply<xcb_intern_atom_reply_t> name(xcb_intern_atom_reply(connection, naming, nullptr), &std::free);
  if (!name) return false;
  const auto asking = xcb_get_selection_owner(connection, name->atom);
  const Reply<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(connection, asking, nullptr), &std::free);
  return owner && owner->owner != XCB_WINDOW_NONE;
}

}  // namespace murmel
