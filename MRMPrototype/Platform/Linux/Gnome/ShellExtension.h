#pragma once

#include "Platform/DesktopProbe.h"
#include "Platform/Linux/Bus/SessionBus.h"

namespace murmel {

/// Murmel's extension of GNOME Shell, which is on the bus while it is enabled and the screen is not locked.
inline const BusObject shellExtension{desktopBusName::shellExtension, "/app/murmel/Shell",
                                      "app.murmel.Shell"};

/// Has GNOME Shell enable it, in the form that the shell takes. A shell does not know what was installed
/// since the session has begun: that it finds at the next. False when it knows neither.
inline bool enableShellExtension(SessionBus& bus) {
  bool isEnabled = false;
  for (const char* form : {"murmel@app.murmel", "murmel-45@app.murmel"}) {
    const auto answer =
        bus.call({desktopBusName::gnomeShell, "/org/gnome/Shell", "org.gnome.Shell.Extensions"},
                 "EnableExtension", "s", form);
    int isKnown = 0;
    if (answer && sd_bus_message_read(answer.get(), "b", &isKnown) >= 0) isEnabled |= isKnown != 0;
  }
  return isEnabled;
}

}  // namespace murmel
