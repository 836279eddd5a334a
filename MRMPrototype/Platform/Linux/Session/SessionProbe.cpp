#include "Platform/Linux/Session/SessionProbe.h"

#include <chrono>
#include <cstring>
#include <future>
#include <memory>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace murmel {

namespace {

bool answersAt(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.data(), path.size());
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (socket < 0) return false;
  const bool connected = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  ::close(socket);
  return connected;
}

/// A server that hangs blocks whoever connects to it: the thread is left to it then, and the server counts as
/// gone.
SessionFacts::X11 probeX11InTime(const Environment& environment) {
  constexpr auto limit = std::chrono::seconds(3);
  auto answer = std::make_shared<std::promise<SessionFacts::X11>>();
  auto facts = answer->get_future();
  std::thread([answer, environment] { answer->set_value(probeX11(environment)); }).detach();
  if (facts.wait_for(limit) == std::future_status::ready) return facts.get();
  SessionFacts::X11 hanging;
  hanging.named = true;
  return hanging;
}

}  // namespace

SessionFacts probeSession(const Environment& environment) {
  SessionFacts facts;
  facts.x11 = probeX11InTime(environment);
  facts.wayland = probeWayland(environment);
  if (const auto socket = environment.value("SWAYSOCK")) facts.swaySocket = answersAt(*socket);
  facts.tray = facts.x11.ownsTray;
  probeSessionBus(facts);
  return facts;
}

}  // namespace murmel
