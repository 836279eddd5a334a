#include "Platform/Linux/Process/VisibleExecutable.h"
#include "Platform/Linux/Session/SessionProbe.h"

#include <chrono>
#include <memory>

#include <poll.h>
#include <wayland-client.h>

namespace murmel {

namespace {

/// Some answer late while their desktop starts.
constexpr auto answerLimit = std::chrono::seconds(5);

struct CloseDisplay {
  void operator()(wl_display* display) const { wl_display_disconnect(display); }
};

void remember(void* names, wl_registry* /*registry*/, std::uint32_t /*name*/, const char* interface,
              std::uint32_t /*version*/) {
  static_cast<std::set<std::string>*>(names)->insert(interface);
}
void forget(void* /*names*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}
constexpr wl_registry_listener registryListener{&remember, &forget};

void finish(void* finished, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
  *static_cast<bool*>(finished) = true;
}
constexpr wl_callback_listener syncListener{&finish};

/// A round trip that a hanging compositor does not hang.
bool roundTrip(wl_display* display) {
  bool finished = false;
  wl_callback* sync = wl_display_sync(display);
  wl_callback_add_listener(sync, &syncListener, &finished);
  const auto deadline = std::chrono::steady_clock::now() + answerLimit;
  while (!finished) {
    wl_display_flush(display);
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    pollfd waiting{wl_display_get_fd(display), POLLIN, 0};
    if (left.count() <= 0 || ::poll(&waiting, 1, static_cast<int>(left.count())) <= 0) break;
    if (wl_display_dispatch(display) < 0) break;
  }
  wl_callback_destroy(sync);
  return finished;
}

}  // namespace

SessionFacts::Wayland probeWayland(const Environment& environment) {
  SessionFacts::Wayland facts;
  const auto name = environment.value("WAYLAND_DISPLAY");
  if (!name) return facts;
  facts.named = true;
  // The library says so on standard error, which is no place for it.
  if (!name->starts_with('/') && !environment.value("XDG_RUNTIME_DIR")) return facts;
  const VisibleExecutable visible;
  const std::unique_ptr<wl_display, CloseDisplay> display(wl_display_connect(name->c_str()));
  if (!display) return facts;
  wl_registry* registry = wl_display_get_registry(display.get());
  wl_registry_add_listener(registry, &registryListener, &facts.interfaces);
  facts.reachable = roundTrip(display.get());
  wl_registry_destroy(registry);
  return facts;
}

}  // namespace murmel
