#include "Platform/Linux/X11/X11Workspace.h"

#include "Platform/Linux/Process/ProcessFacts.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

namespace murmel {

namespace {

/// Every switch passes through no window or a neighbour for up to a millisecond.
constexpr Duration settlingTime = std::chrono::milliseconds(40);

/// Windows that come to the front without being a place where somebody writes.
constexpr std::array<std::string_view, 8> panelTypes = {
    "_NET_WM_WINDOW_TYPE_DOCK",    "_NET_WM_WINDOW_TYPE_DESKTOP",    "_NET_WM_WINDOW_TYPE_NOTIFICATION",
    "_NET_WM_WINDOW_TYPE_TOOLTIP", "_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
    "_NET_WM_WINDOW_TYPE_MENU",    "_NET_WM_WINDOW_TYPE_SPLASH",
};

std::string localHostName() {
  std::array<char, 256> name{};
  if (::gethostname(name.data(), name.size() - 1) != 0) return {};
  return name.data();
}

}  // namespace

std::expected<std::unique_ptr<X11Workspace>, std::string> X11Workspace::open(Executor& executor,
                                                                             const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return std::unexpected(connection.error());
  return std::unique_ptr<X11Workspace>(new X11Workspace(executor, *std::move(connection)));
}

X11Workspace::X11Workspace(Executor& executor, std::unique_ptr<X11Connection> connection)
    : executor_(executor), connection_(std::move(connection)) {
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_->get(), connection_->root(), XCB_CW_EVENT_MASK, &mask);
  announced_ = frontmostApplication();
  watch_ = executor_.watchReadable(connection_->descriptor(), [this] { handleEvents(); });
}

bool X11Workspace::isSupported() {
  const auto supported = connection_->propertyWords(connection_->root(), "_NET_SUPPORTED");
  const auto wanted = connection_->atom("_NET_ACTIVE_WINDOW");
  handleEvents();
  return std::ranges::find(supported, wanted) != supported.end();
}

void X11Workspace::handleEvents() {
  while (const auto event = connection_->nextEvent()) {
    if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY) continue;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
    if (change.atom != connection_->atom("_NET_ACTIVE_WINDOW")) continue;
    pendingAnnouncement_ = executor_.after(settlingTime, [this] { announce(); });
  }
  // A connection that has ended stays readable for ever.
  if (connection_->hasFailed()) watch_.reset();
}

void X11Workspace::announce() {
  const auto front = frontmostApplication();
  // The number of a window may be that of another one which has gone since. An empty desktop is not told of,
  // but the way back from it is.
  const bool isNews =
      front && (!announced_ || front->window != announced_->window || front->client != announced_->client);
  announced_ = front;
  if (isNews) activations_.emit(*front);
}

xcb_window_t X11Workspace::activeWindow() {
  const auto windows = connection_->propertyWords(connection_->root(), "_NET_ACTIVE_WINDOW");
  return windows.empty() ? static_cast<xcb_window_t>(XCB_NONE) : windows.front();
}

bool X11Workspace::exists(xcb_window_t window) {
  return x11Reply(connection_->get(), xcb_get_window_attributes_reply,
                  xcb_get_window_attributes(connection_->get(), window)) != nullptr;
}

RunningApplication X11Workspace::describe(xcb_window_t window) {
  RunningApplication application;
  application.window = window;
  application.client = connection_->clientOf(window);
  auto& process = application.client.processIdentifier;
  // What the window says of itself counts only where the server cannot tell, and only from this machine:
  // inside a container and on other machines the same number is another process.
  const auto stated = connection_->propertyWords(window, "_NET_WM_PID");
  if (process == 0 && !stated.empty() &&
      connection_->propertyBytes(window, "WM_CLIENT_MACHINE") == localHostName())
    process = static_cast<pid_t>(stated.front());

  const auto names = connection_->propertyBytes(window, "WM_CLASS");
  const auto separator = names.find('\0');
  application.instanceName = names.substr(0, separator);
  if (separator != std::string::npos) {
    application.bundleIdentifier = names.substr(separator + 1);
    if (const auto end = application.bundleIdentifier.find('\0'); end != std::string::npos)
      application.bundleIdentifier.resize(end);
  }
  const auto types = connection_->propertyWords(window, "_NET_WM_WINDOW_TYPE");
  application.isPanel = std::ranges::any_of(types, [&](xcb_atom_t type) {
    return std::ranges::find(panelTypes, connection_->atomName(type)) != panelTypes.end();
  });
  if (process != 0) {
    if (const auto facts = factsOf(process)) application.startTime = facts->startTime;
  }
  return application;
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
  const auto window = activeWindow();
  std::optional<RunningApplication> application;
  if (window != XCB_NONE) application = describe(window);
  // A window that was destroyed in between belongs to nobody.
  if (application && application->client.processIdentifier == 0 && !exists(window)) application.reset();
  handleEvents();
  return application;
}

Registration X11Workspace::onActivation(std::function<void(const RunningApplication&)> handler) {
  return activations_.subscribe(std::move(handler));
}

bool X11Workspace::isTerminated(const RunningApplication& application) {
  const auto process = application.client.processIdentifier;
  if (process != 0 && hasEnded(process, application.startTime)) return true;
  // The number of a window may have been given to another program since.
  const bool isGone = !exists(application.window) ||
                      !isSameProgram(connection_->clientOf(application.window), application.client);
  handleEvents();
  return isGone;
}

void X11Workspace::askWindowManager(xcb_window_t window, const char* what, std::uint32_t first,
                                    std::uint32_t second) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = connection_->atom(what);
  message.data.data32[0] = first;
  message.data.data32[1] = second;
  xcb_send_event(connection_->get(), 0, connection_->root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
}

void X11Workspace::activate(const RunningApplication& application) {
  const auto window = application.window;
  // Some window managers bring a window of another workspace to the one that is shown: so go there first.
  constexpr std::uint32_t everyWorkspace = 0xFFFF'FFFF;
  const auto itsWorkspace = connection_->propertyWords(window, "_NET_WM_DESKTOP");
  const auto shown = connection_->propertyWords(connection_->root(), "_NET_CURRENT_DESKTOP");
  if (!itsWorkspace.empty() && itsWorkspace.front() != everyWorkspace && itsWorkspace != shown)
    askWindowManager(connection_->root(), "_NET_CURRENT_DESKTOP", itsWorkspace.front(), XCB_CURRENT_TIME);
  // "By a pager": on the user's behalf. Window managers hold back requests of applications themselves.
  constexpr std::uint32_t sourceIsPager = 2;
  askWindowManager(window, "_NET_ACTIVE_WINDOW", sourceIsPager, XCB_CURRENT_TIME);
  xcb_flush(connection_->get());
  handleEvents();
}

}  // namespace murmel
