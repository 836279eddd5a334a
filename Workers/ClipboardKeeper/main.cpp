// Knows what the application serves on the clipboard, and serves it once the application has ended: until
// somebody else writes to the clipboard, or the session ends. Gets its orders on standard input.

#include "Workers/ClipboardKeeper/Keeper.h"
#include "Workers/Common/Isolation.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include <sys/prctl.h>
#include <unistd.h>

namespace {

using namespace murmel;

/// Far beyond what anybody copies; a length that is out of step must not claim the machine's memory.
constexpr std::uint64_t longestBody = std::uint64_t{1} << 31;
/// The copy that goes on is nobody's child: it outlives the application, and neither the application's end
/// nor that of its session of processes is a signal to it.
bool detach() {
  const pid_t child = ::fork();
  if (child > 0) ::_exit(0);
  return child == 0;
}

bool readExactly(std::string& bytes, std::size_t size) {
  bytes.resize(size);
  std::size_t have = 0;
  while (have < size) {
    const auto count = ::read(STDIN_FILENO, bytes.data() + have, size - have);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    have += static_cast<std::size_t>(count);
  }
  return true;
}

std::optional<ClipboardOrder> nextOrder() {
  std::string head;
  std::string body;
  if (!readExactly(head, clipboardOrderHeadSize)) return std::nullopt;
  const auto size = clipboardOrderBodySize(head);
  if (!size || *size > longestBody || !readExactly(body, *size)) return std::nullopt;
  return decodedClipboardOrder(head, body);
}

}  // namespace

void murmel::Keeper::serve() {
  /// For readers that are still being given a large value when somebody else takes the clipboard.
  constexpr auto afterglow = std::chrono::seconds(3);
  eventfd_t count = 0;
  while (::eventfd_read(over_.get(), &count) != 0 && errno == EINTR) {
  }
  if (!displayHasEnded_) std::this_thread::sleep_for(afterglow);
}

int main() {
  // What was on somebody's clipboard is in this process's memory.
  ::prctl(PR_SET_DUMPABLE, 0);
  std::signal(SIGPIPE, SIG_IGN);
  if (!detach()) return 1;
  const bool isWayland = std::getenv("WAYLAND_DISPLAY") != nullptr;
  const auto keeper = isWayland ? openWaylandKeeper() : openX11Keeper();
  if (!keeper) return 1;
  // From here on it can speak to the display server, and reach nothing else.
  if (!worker::isolate({}) || !worker::keepConnections()) return 1;
  keeper->start();

  const auto say = [](char byte) { return ::write(STDOUT_FILENO, &byte, 1) == 1; };
  if (!say('r')) return 1;
  bool serves = false;
  while (auto order = nextOrder()) {
    if (order->kind == ClipboardOrder::Kind::keep) {
      keeper->keep(*std::move(order));
    } else {
      serves = keeper->take();
      // Nobody may be there any more to hear it.
      say(serves ? 'y' : 'n');
      break;
    }
  }
  // Without an order the application has ended unexpectedly.
  if (!serves && keeper->hasContents()) serves = keeper->take();
  if (serves) keeper->serve();
  return 0;
}
