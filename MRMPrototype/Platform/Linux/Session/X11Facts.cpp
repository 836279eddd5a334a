#include "Platform/Linux/Session/SessionProbe.h"
#include "Platform/Linux/X11/X11Connection.h"

#include <algorithm>
#include <string_view>

namespace murmel {

namespace {

bool hasExtension(X11Connection& connection, std::string_view name) {
  const auto cookie =
      xcb_query_extension(connection.get(), static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = x11Reply(connection.get(), xcb_query_extension_reply, cookie);
  return reply && reply->present != 0;
}

bool windowManagerNamesActiveWindow(X11Connection& connection) {
  const auto supported = connection.propertyWords(connection.root(), "_NET_SUPPORTED");
  return std::ranges::find(supported, connection.atom("_NET_ACTIVE_WINDOW")) != supported.end();
}

}  // namespace

SessionFacts::X11 probeX11(const Environment& environment) {
  SessionFacts::X11 facts;
  const auto display = environment.value("DISPLAY");
  if (!display) return facts;
  facts.named = true;
  const auto opened = X11Connection::open(*display);
  if (!opened) return facts;
  auto& connection = **opened;
  facts.reachable = true;
  // Servers before 23.1 do not say it themselves.
  facts.rootless = hasExtension(connection, "XWAYLAND") || environment.value("WAYLAND_DISPLAY") ||
                   environment.value("XDG_SESSION_TYPE") == "wayland";
  facts.injectsKeys = hasExtension(connection, "XTEST");
  facts.hearsKeys = hasExtension(connection, "XInputExtension");
  facts.namesActiveWindow = windowManagerNamesActiveWindow(connection);
  const auto tray =
      x11Reply(connection.get(), xcb_get_selection_owner_reply,
               xcb_get_selection_owner(connection.get(), connection.atom("_NET_SYSTEM_TRAY_S0")));
  facts.ownsTray = tray && tray->owner != XCB_NONE;
  return facts;
}

}  // namespace murmel
