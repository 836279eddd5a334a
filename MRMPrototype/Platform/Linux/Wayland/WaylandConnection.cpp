#include "Platform/Linux/Wayland/WaylandConnection.h"

#include "Platform/Linux/Process/VisibleExecutable.h"

#include <algorithm>
#include <chrono>

#include <poll.h>
#include <sys/socket.h>

namespace murmel {

namespace {

constexpr wl_callback_listener syncListener{
    [](void* finished, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
      *static_cast<bool*>(finished) = true;
    }};

}  // namespace

std::expected<std::unique_ptr<WaylandConnection>, std::string> WaylandConnection::open(
    const std::string& display) {
  // KWin offers some interfaces to the executables alone that a desktop file names.
  const VisibleExecutable visible;
  auto* connected = wl_display_connect(display.empty() ? nullptr : display.c_str());
  if (connected == nullptr) return std::unexpected("The Wayland compositor cannot be reached.");
  std::unique_ptr<WaylandConnection> connection(new WaylandConnection(connected));
  if (!connection->roundTrip(firstAnswerLimit))
    return std::unexpected("The Wayland compositor does not answer.");
  return connection;
}

WaylandConnection::WaylandConnection(wl_display* display)
    : display_(display), registry_(wl_display_get_registry(display)) {
  static constexpr wl_registry_listener listener{
      .global =
          [](void* self, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
             std::uint32_t version) {
            // The first of several (outputs, seats) is the one that counts.
            static_cast<WaylandConnection*>(self)->globals_.try_emplace(interface, Global{name, version});
          },
      .global_remove =
          [](void* self, wl_registry* /*registry*/, std::uint32_t name) {
            std::erase_if(static_cast<WaylandConnection*>(self)->globals_,
                          [name](const auto& entry) { return entry.second.name == name; });
          },
  };
  wl_registry_add_listener(registry_, &listener, this);
}

WaylandConnection::~WaylandConnection() {
  if (seat_ != nullptr) wl_seat_destroy(seat_);
  wl_registry_destroy(registry_);
  wl_display_disconnect(display_);
}

pid_t WaylandConnection::compositor() const {
  ucred credentials{};
  socklen_t size = sizeof credentials;
  if (::getsockopt(descriptor(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) return 0;
  return credentials.pid;
}

std::uint32_t WaylandConnection::versionOf(const wl_interface& interface) const {
  const auto found = globals_.find(interface.name);
  return found == globals_.end() ? 0 : found->second.version;
}

void* WaylandConnection::bindAny(const wl_interface& interface, std::uint32_t newestKnown) {
  const auto found = globals_.find(interface.name);
  if (found == globals_.end()) return nullptr;
  return wl_registry_bind(registry_, found->second.name, &interface,
                          std::min(found->second.version, newestKnown));
}

wl_seat* WaylandConnection::seat() {
  if (seat_ == nullptr) seat_ = bind<wl_seat>(wl_seat_interface, 1);
  return seat_;
}

bool WaylandConnection::pump(Duration limit) {
  while (wl_display_prepare_read(display_) != 0) {
    if (wl_display_dispatch_pending(display_) < 0) return !(failed_ = true);
  }
  wl_display_flush(display_);
  pollfd waiting{descriptor(), POLLIN, 0};
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(limit).count();
  if (::poll(&waiting, 1, static_cast<int>(wait)) > 0) {
    if (wl_display_read_events(display_) < 0) failed_ = true;
  } else {
    wl_display_cancel_read(display_);
  }
  if (wl_display_dispatch_pending(display_) < 0) failed_ = true;
  return !failed_;
}

bool WaylandConnection::roundTrip(Duration limit) {
  if (hasFailed()) return false;
  bool finished = false;
  auto* sync = wl_display_sync(display_);
  wl_callback_add_listener(sync, &syncListener, &finished);
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (!finished) {
    const Duration left = deadline - std::chrono::steady_clock::now();
    if (left <= Duration{} || !pump(left)) break;
  }
  wl_callback_destroy(sync);
  wl_display_flush(display_);
  return finished;
}

}  // namespace murmel
