#include "Platform/Linux/Session/SessionProbe.h"

#include <cstring>

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

}  // namespace

SessionFacts probeSession(const Environment& environment) {
  SessionFacts facts;
  facts.x11 = probeX11(environment);
  facts.wayland = probeWayland(environment);
  if (const auto socket = environment.value("SWAYSOCK")) facts.swaySocket = answersAt(*socket);
  facts.tray = facts.x11.ownsTray;
  probeSessionBus(facts);
  return facts;
}

}  // namespace murmel
