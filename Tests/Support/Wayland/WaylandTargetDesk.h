#pragma once

#include "Platform/Linux/Gnome/GnomeWorkspace.h"
#include "Platform/Linux/KWin/PlasmaWindows.h"
#include "Platform/Linux/Sway/SwayWorkspace.h"
#include "Support/BuildPaths.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/RealLoop.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

namespace murmel::test {

inline std::string sessionVariable(const char* name) {
  const auto* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// The compositor of the session, sway, KWin or GNOME Shell, whose applications are processes of ours.
class WaylandTargetDesk {
 public:
  using Application = std::unique_ptr<ApplicationProcess>;

  WaylandTargetDesk() {
    if (isGnome) {
      bus = SessionBus::open(loop.executor);
      // Whom the shell's extension answers.
      const BusObject names{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"};
      if (!bus || !bus->call(names, "RequestName", "su", "app.murmel.Murmel.Development", 0U))
        throw std::runtime_error("no name on the bus");
      windows = std::make_unique<GnomeWorkspace>(loop.executor, *bus);
    } else if (isKWin) {
      auto opened = PlasmaWindows::open(loop.executor, false);
      if (!opened) throw std::runtime_error(opened.error());
      windows = *std::move(opened);
    } else {
      windows = SwayWorkspace::open(loop.executor, sessionVariable("SWAYSOCK"));
    }
    if (!windows) throw std::runtime_error("the compositor does not answer");
  }

  Workspace& workspace() { return *windows; }

  /// Starts an application and waits until it has a window and the keyboard.
  Application launch(const std::string& identifier) {
    auto application = std::make_unique<ApplicationProcess>(
        std::vector<std::string>{buildFolder() + "/tests/wayland-target", identifier});
    const auto hasKeyboard = [&] {
      const auto front = windows->frontmostApplication();
      if (!front || front->client.processIdentifier != application->identifier()) return false;
      known[application->identifier()] = *front;
      return !application->told("focus").empty();
    };
    if (!loop.waitUntil(hasKeyboard)) throw std::runtime_error("the application did not come to the front");
    return application;
  }
  void bringToFront(const Application& application) {
    windows->activate(known.at(application->identifier()));
  }
  void terminate(const Application& application) { application->kill(); }
  [[nodiscard]] static pid_t identifierOf(const Application& application) {
    return application->identifier();
  }
  bool waitUntil(const std::function<bool()>& condition) { return loop.waitUntil(condition); }

  RealLoop loop;
  bool isGnome = sessionVariable("XDG_CURRENT_DESKTOP") == "GNOME";
  bool isKWin = sessionVariable("XDG_CURRENT_DESKTOP") == "KDE";
  std::unique_ptr<SessionBus> bus;
  std::unique_ptr<Workspace> windows;
  std::map<pid_t, RunningApplication> known;  ///< as they were when they came to the front
};

}  // namespace murmel::test
