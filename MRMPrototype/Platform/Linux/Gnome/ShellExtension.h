#pragma once

#include "Platform/DesktopProbe.h"
#include "Platform/Linux/Bus/SessionBus.h"

namespace murmel {

/// Murmel's extension of GNOME Shell, which is on the bus while it is enabled and the screen is not locked.
inline const BusObject shellExtension{desktopBusName::shellExtension, "/app/murmel/Shell",
                                      "app.murmel.Shell"};

/// Has GNOME Shell enable it. False when the shell does not know it: those that were installed since the
/// session has begun it finds at the next.
inline bool enableShellExtension(SessionBus& bus) {
  const auto answer = bus.call({desktopBusName::gnomeShell, "/org/gnome/Shell", "org.gnome.Shell.Extensions"},
                               "EnableExtension", "s", shellExtensionIdentifier);
  int isEnabled = 0;
  return answer && sd_bus_message_read(answer.get(), "b", &isEnabled) >= 0 && isEnabled != 0;
}

}  // namespace murmel
