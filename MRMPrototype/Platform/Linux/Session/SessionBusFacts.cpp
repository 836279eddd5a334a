#include "Platform/Linux/Session/SessionProbe.h"

#include <cstdlib>
#include <memory>
#include <optional>

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

/// Has the bus start the portals if they do not run yet, which takes its time once.
std::uint32_t versionOfShortcutsPortal(sd_bus* bus) {
  constexpr std::uint64_t startLimitMicroseconds = 3'000'000;
  sd_bus_set_method_call_timeout(bus, startLimitMicroseconds);
  std::uint32_t version = 0;
  sd_bus_get_property_trivial(bus, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                              "org.freedesktop.portal.GlobalShortcuts", "version", nullptr, 'u', &version);
  return version;
}

}  // namespace

void probeSessionBus(SessionFacts& facts) {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return;
  const std::unique_ptr<sd_bus, CloseBus> bus(opened);
  sd_bus_set_method_call_timeout(bus.get(), answerLimitMicroseconds);
  for (const char* name : {desktopBusName::trayWatcher, desktopBusName::globalAccel,
                           desktopBusName::gnomeShell, desktopBusName::shellExtension}) {
    const auto owned = isOwned(bus.get(), name);
    if (!owned) return;  // asking on would take a second each
    if (*owned) facts.busNames.insert(name);
  }
  if (facts.busNames.contains(desktopBusName::trayWatcher)) facts.tray = true;
  // Desktops with interfaces of their own need none.
  const bool hasOwn = facts.swaySocket || facts.busNames.contains(desktopBusName::globalAccel) ||
                      facts.busNames.contains(desktopBusName::gnomeShell);
  if (facts.wayland.reachable && !hasOwn) facts.shortcutsPortal = versionOfShortcutsPortal(bus.get());
}

}  // namespace murmel
