#include "Platform/Linux/Session/SessionProbe.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include <systemd/sd-bus.h>

namespace murmel {

namespace {

constexpr std::uint64_t answerLimitMicroseconds = 1'000'000;

struct CloseBus {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

/// Nothing when the bus does not answer.
std::optional<bool> isOwned(sd_bus* bus, const char* name) {
  sd_bus_message* reply = nullptr;
  int owned = 0;
  const int status = sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                        "org.freedesktop.DBus", "NameHasOwner", nullptr, &reply, "s", name);
  if (status >= 0) sd_bus_message_read(reply, "b", &owned);
  sd_bus_message_unref(reply);
  if (status < 0) return std::nullopt;
  return owned != 0;
}

/// A number that one of the portal's interfaces has; 0 without an answer. Has the bus start the portals if
/// they do not run yet, which takes its time once.
std::uint32_t portalNumber(sd_bus* bus, const char* interface, const char* property) {
  const auto name = std::string("org.freedesktop.portal.") + interface;
  std::uint32_t number = 0;
  sd_bus_get_property_trivial(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                              name.c_str(), property, nullptr, 'u', &number);
  return number;
}

PortalVersions versionsOfPortals(sd_bus* bus) {
  constexpr std::uint64_t startLimitMicroseconds = 3'000'000;
  constexpr std::uint32_t keyboard = 1;
  sd_bus_set_method_call_timeout(bus, startLimitMicroseconds);
  PortalVersions versions;
  const auto devices = portalNumber(bus, "RemoteDesktop", "AvailableDeviceTypes");
  if (isOwned(bus, "org.freedesktop.portal.Desktop") != true) return versions;  // it does not start
  versions.shortcuts = portalNumber(bus, "GlobalShortcuts", "version");
  if ((devices & keyboard) == 0) return versions;
  versions.keyboard = portalNumber(bus, "RemoteDesktop", "version");
  versions.clipboard = portalNumber(bus, "Clipboard", "version");
  return versions;
}

}  // namespace

void probeSessionBus(SessionFacts& facts) {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return;
  const std::unique_ptr<sd_bus, CloseBus> bus(opened);
  sd_bus_set_method_call_timeout(bus.get(), answerLimitMicroseconds);
  for (const char* name :
       {desktopBusName::trayWatcher, desktopBusName::globalAccel, desktopBusName::gnomeShell,
        desktopBusName::shellExtension, desktopBusName::accessibility}) {
    const auto owned = isOwned(bus.get(), name);
    if (!owned) return;  // asking on would take a second each
    if (*owned) facts.busNames.insert(name);
  }
  if (facts.busNames.contains(desktopBusName::trayWatcher)) facts.tray = true;
  // Desktops whose own interfaces serve us need none.
  const bool hasOwn = facts.swaySocket || facts.wayland.interfaces.contains("org_kde_kwin_fake_input") ||
                      facts.busNames.contains(desktopBusName::shellExtension);
  if (facts.wayland.reachable && !hasOwn) facts.portals = versionsOfPortals(bus.get());
}

}  // namespace murmel
