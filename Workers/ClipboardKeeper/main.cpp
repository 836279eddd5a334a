// Knows what the application serves on the clipboard, and serves it once the application has ended: until
// somebody else writes to the clipboard, or the session ends. Gets its orders on standard input.

#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/X11/ClipboardKeeper.h"
#include "Platform/Linux/X11/X11EventLoop.h"
#include "Platform/Linux/X11/X11IncrementalSender.h"
#include "Platform/Linux/X11/X11Selection.h"
#include "Workers/Common/Isolation.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <future>
#include <string>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

using namespace murmel;

/// Far beyond what anybody copies; a length that is out of step must not claim the machine's memory.
constexpr std::uint64_t longestBody = std::uint64_t{1} << 31;
/// For readers that are being sent a large value in pieces when somebody else takes the clipboard.
constexpr auto afterglow = std::chrono::seconds(3);

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

class Keeper {
 public:
  Keeper(std::unique_ptr<X11Connection> connection, std::uint8_t fixesEvent)
      : loop_(std::move(connection)),
        sender_(loop_.connection()),
        fixesEvent_(fixesEvent),
        selection_(
            loop_, sender_, clock_, "CLIPBOARD",
            {.read = [](const ClipboardRead&) {}, .changedByAnother = [this](std::int64_t) { lost(); }}) {
    loop_.start([this](const xcb_generic_event_t& event) { handle(event); },
                [this] {
                  sender_.dropAbandoned(loop_.now());
                  if (loop_.connection().hasFailed()) lost();
                });
  }
  ~Keeper() { loop_.stop(); }
  Keeper(const Keeper&) = delete;
  Keeper& operator=(const Keeper&) = delete;

  void keep(ClipboardOrder order) { kept_ = std::move(order); }
  [[nodiscard]] bool hasContents() const { return !kept_.contents.items.empty(); }

  bool take() {
    std::promise<bool> answer;
    auto answered = answer.get_future();
    loop_.enqueue([this, &answer] {
      serving_ = selection_.adopt(shared(std::move(kept_.contents)), kept_.ownedSince);
      answer.set_value(serving_);
    });
    return answered.get();
  }

  /// Returns when there is nothing left to serve.
  void serve() {
    pollfd end{over_.get(), POLLIN, 0};
    while (::poll(&end, 1, -1) < 0 && errno == EINTR) {
    }
    if (!loop_.connection().hasFailed()) std::this_thread::sleep_for(afterglow);
  }

 private:
  void lost() {
    if (serving_) ::eventfd_write(over_.get(), 1);
  }

  void handle(const xcb_generic_event_t& event) {
    constexpr std::uint8_t sentByAClient = 0x80;
    const auto kind = static_cast<std::uint8_t>(event.response_type & ~sentByAClient);
    if (kind == fixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
      selection_.ownerChanged(reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event));
    } else if (kind == XCB_SELECTION_REQUEST) {
      selection_.requested(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    } else if (kind == XCB_PROPERTY_NOTIFY) {
      const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      selection_.propertyChanged(change);
      sender_.propertyChanged(change, loop_.now());
    } else if (kind == XCB_DESTROY_NOTIFY) {
      sender_.windowDestroyed(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
    }
  }

  SystemClock clock_;
  UniqueDescriptor over_{::eventfd(0, EFD_CLOEXEC)};
  std::atomic<bool> serving_ = false;
  ClipboardOrder kept_;
  X11EventLoop loop_;
  X11IncrementalSender sender_;
  std::uint8_t fixesEvent_;
  X11Selection selection_;
};

}  // namespace

int main() {
  // What was on somebody's clipboard is in this process's memory.
  ::prctl(PR_SET_DUMPABLE, 0);
  std::signal(SIGPIPE, SIG_IGN);
  if (!detach()) return 1;
  auto connection = X11Connection::open();
  if (!connection) return 1;
  const auto fixesEvent = firstXFixesEvent(**connection);
  if (!fixesEvent) return 1;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  // From here on it can speak to the X server, and reach nothing else.
  if (!worker::isolate(folder)) return 1;

  Keeper keeper(*std::move(connection), *fixesEvent);
  const auto say = [](char byte) { return ::write(STDOUT_FILENO, &byte, 1) == 1; };
  if (!say('r')) return 1;
  bool serves = false;
  while (auto order = nextOrder()) {
    if (order->kind == ClipboardOrder::Kind::keep) {
      keeper.keep(*std::move(order));
    } else {
      serves = keeper.take();
      // Nobody may be there any more to hear it.
      say(serves ? 'y' : 'n');
      break;
    }
  }
  // Without an order the application has ended unexpectedly.
  if (!serves && keeper.hasContents()) serves = keeper.take();
  if (serves) keeper.serve();
  return 0;
}
