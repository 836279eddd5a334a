#include "Platform/Linux/Session/SessionProbe.h"

#include <chrono>
#include <cstdlib>
#include <memory>

#include <systemd/sd-bus.h>

namespace murmel {

namespace {

constexpr auto openingLimit = std::chrono::seconds(1);

struct CloseTriedBus {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

/// Somebody takes the connection, but says nothing on it.
bool hangs(int (*open)(sd_bus**)) {
  sd_bus* opened = nullptr;
  if (open(&opened) < 0) return false;  // libraries see that at once, too
  const std::unique_ptr<sd_bus, CloseTriedBus> bus(opened);
  const auto limit = std::chrono::steady_clock::now() + openingLimit;
  while (sd_bus_is_ready(bus.get()) == 0) {
    const auto left =
        std::chrono::duration_cast<std::chrono::microseconds>(limit - std::chrono::steady_clock::now());
    if (left.count() <= 0) return true;
    const int progress = sd_bus_process(bus.get(), nullptr);
    if (progress < 0) return false;
    if (progress == 0) sd_bus_wait(bus.get(), static_cast<std::uint64_t>(left.count()));
  }
  return false;
}

}  // namespace

void avoidHangingBuses() {
  const auto avoid = [](const char* variable) { ::setenv(variable, "unix:path=/dev/null", 1); };
  if (hangs(&sd_bus_open_user)) avoid("DBUS_SESSION_BUS_ADDRESS");
  if (hangs(&sd_bus_open_system)) avoid("DBUS_SYSTEM_BUS_ADDRESS");
}

}  // namespace murmel
