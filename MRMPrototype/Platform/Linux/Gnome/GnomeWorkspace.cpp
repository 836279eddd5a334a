#include "Platform/Linux/Gnome/GnomeWorkspace.h"

#include "Platform/Linux/Gnome/ShellExtension.h"
#include "Platform/Linux/Process/ProcessFacts.h"

namespace murmel {

GnomeWorkspace::GnomeWorkspace(Executor& executor, SessionBus& bus)
    : bus_(bus),
      activations_(executor, [this] { return frontmostApplication(); }),
      owner_(bus.onOwner(shellExtension.service, [this](bool isThere) {
        if (isThere) follow();
      })) {
  follow();
  activations_.begin();
}

void GnomeWorkspace::follow() {
  changes_ = bus_.onSignal(shellExtension, "ActiveWindowChanged",
                           [this](sd_bus_message* /*signal*/) { activations_.changed(); });
  const auto answer = bus_.call({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"},
                                "GetConnectionUnixProcessID", "s", shellExtension.service.c_str());
  std::uint32_t process = 0;
  if (answer && sd_bus_message_read(answer.get(), "u", &process) >= 0) shell_ = static_cast<pid_t>(process);
}

std::optional<RunningApplication> GnomeWorkspace::frontmostApplication() {
  const auto answer = bus_.call(shellExtension, "ActiveWindow");
  const char* windowClass = nullptr;
  const char* identifier = nullptr;
  std::uint32_t process = 0;
  std::uint32_t window = 0;
  int isX11 = 0;
  if (!answer ||
      sd_bus_message_read(answer.get(), "(ssuub)", &windowClass, &identifier, &process, &window, &isX11) <
          0 ||
      window == 0)
    return std::nullopt;
  RunningApplication application;
  application.client = {static_cast<pid_t>(process), window};
  application.window = window;
  application.bundleIdentifier = windowClass;
  application.instanceName = identifier;
  // The shell reads the clipboard for programs of Wayland's, and everything that is copied, besides.
  if (isX11 == 0) application.clipboardProxy = shell_;
  application.proxyLooksFirst = isX11 == 0;
  if (const auto facts = factsOf(application.client.processIdentifier))
    application.startTime = facts->startTime;
  return application;
}

bool GnomeWorkspace::isTerminated(const RunningApplication& application) {
  // The shell keeps a window for a moment longer.
  if (hasEnded(application.client.processIdentifier, application.startTime)) return true;
  const auto answer = bus_.call(shellExtension, "HasWindow", "u", application.window);
  int isThere = 0;
  return !answer || sd_bus_message_read(answer.get(), "b", &isThere) < 0 || isThere == 0;
}

void GnomeWorkspace::activate(const RunningApplication& application) {
  bus_.tell(shellExtension, "Activate", "u", application.window);
}

}  // namespace murmel
