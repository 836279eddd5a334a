#include "Platform/Linux/KWin/PlasmaWindows.h"

#include "Platform/Linux/Process/ProcessFacts.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

/// The first version that names windows so that no two ever have the same name.
constexpr std::uint32_t versionWithNames = 13;
constexpr std::uint32_t newestVersion = 16;

void destroy(org_kde_plasma_window_management* manager) {
  wl_proxy_destroy(reinterpret_cast<wl_proxy*>(manager));
}

}  // namespace

struct PlasmaWindows::Window {
  PlasmaWindows& owner;
  std::uint32_t number;
  WaylandObject<org_kde_plasma_window> handle;
  std::string application{};
  pid_t process = 0;
  bool isActive = false;
  bool isClosed = false;
};

std::expected<std::unique_ptr<PlasmaWindows>, std::string> PlasmaWindows::open(Executor& executor,
                                                                               bool asksX) {
  auto connection = WaylandConnection::open();
  if (!connection) return std::unexpected(connection.error());
  const auto& interface = org_kde_plasma_window_management_interface;
  if ((*connection)->versionOf(interface) < versionWithNames)
    return std::unexpected("KWin does not tell this program of its windows.");
  auto* manager = (*connection)->bind<org_kde_plasma_window_management>(interface, newestVersion);
  std::unique_ptr<PlasmaWindows> windows(new PlasmaWindows(executor, asksX, *std::move(connection), manager));
  // The windows that are there are introduced first, and then described.
  if (!windows->connection_->roundTrip() || !windows->connection_->roundTrip())
    return std::unexpected("The Wayland compositor does not answer.");
  windows->activations_.begin();
  return windows;
}

PlasmaWindows::PlasmaWindows(Executor& executor, bool asksX, std::unique_ptr<WaylandConnection> connection,
                             org_kde_plasma_window_management* manager)
    : connection_(std::move(connection)),
      manager_(manager, &destroy),
      xWindows_(asksX),
      activations_(executor, [this] { return frontmostApplication(); }) {
  using Manager = org_kde_plasma_window_management*;
  static constexpr org_kde_plasma_window_management_listener listener{
      .show_desktop_changed = [](void* /*self*/, Manager /*manager*/, std::uint32_t /*state*/) {},
      .window = [](void* /*self*/, Manager /*manager*/, std::uint32_t /*number*/) {},
      .stacking_order_changed = [](void* /*self*/, Manager /*manager*/, wl_array* /*windows*/) {},
      .stacking_order_uuid_changed = [](void* /*self*/, Manager /*manager*/, const char* /*windows*/) {},
      .window_with_uuid =
          [](void* self, Manager /*manager*/, std::uint32_t /*number*/, const char* identifier) {
            static_cast<PlasmaWindows*>(self)->introduced(identifier);
          },
  };
  org_kde_plasma_window_management_add_listener(manager_.get(), &listener, this);
  watch_ = executor.watchReadable(connection_->descriptor(), [this] { dispatch(); });
}

PlasmaWindows::~PlasmaWindows() = default;

void PlasmaWindows::introduced(const char* identifier) {
  using Handle = org_kde_plasma_window*;
  // Most of what KWin tells of a window is for a task bar.
  static constexpr org_kde_plasma_window_listener listener{
      .title_changed = [](void* /*self*/, Handle /*handle*/, const char* /*title*/) {},
      .app_id_changed = [](void* self, Handle /*handle*/,
                           const char* name) { static_cast<Window*>(self)->application = name; },
      .state_changed =
          [](void* self, Handle /*handle*/, std::uint32_t state) {
            auto& window = *static_cast<Window*>(self);
            window.isActive = (state & ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE) != 0;
            window.owner.activations_.changed();
          },
      .virtual_desktop_changed = [](void* /*self*/, Handle /*handle*/, std::int32_t /*number*/) {},
      .themed_icon_name_changed = [](void* /*self*/, Handle /*handle*/, const char* /*name*/) {},
      .unmapped =
          [](void* self, Handle /*handle*/) {
            auto& window = *static_cast<Window*>(self);
            window.isClosed = true;
            window.owner.activations_.changed();
          },
      .initial_state = [](void* self,
                          Handle /*handle*/) { static_cast<Window*>(self)->owner.activations_.changed(); },
      .parent_window = [](void* /*self*/, Handle /*handle*/, Handle /*parent*/) {},
      .geometry = [](void* /*self*/, Handle /*handle*/, std::int32_t /*x*/, std::int32_t /*y*/,
                     std::uint32_t /*width*/, std::uint32_t /*height*/) {},
      .icon_changed = [](void* /*self*/, Handle /*handle*/) {},
      .pid_changed =
          [](void* self, Handle /*handle*/, std::uint32_t process) {
            static_cast<Window*>(self)->process = static_cast<pid_t>(process);
          },
      .virtual_desktop_entered = [](void* /*self*/, Handle /*handle*/, const char* /*desktop*/) {},
      .virtual_desktop_left = [](void* /*self*/, Handle /*handle*/, const char* /*desktop*/) {},
      .application_menu = [](void* /*self*/, Handle /*handle*/, const char* /*service*/,
                             const char* /*path*/) {},
      .activity_entered = [](void* /*self*/, Handle /*handle*/, const char* /*activity*/) {},
      .activity_left = [](void* /*self*/, Handle /*handle*/, const char* /*activity*/) {},
      .resource_name_changed = [](void* /*self*/, Handle /*handle*/, const char* /*name*/) {},
  };
  auto* handle = org_kde_plasma_window_management_get_window_by_uuid(manager_.get(), identifier);
  windows_.push_back(
      std::make_unique<Window>(Window{*this, ++lastNumber_, {handle, &org_kde_plasma_window_destroy}}));
  org_kde_plasma_window_add_listener(handle, &listener, windows_.back().get());
}

void PlasmaWindows::dispatch() {
  // A connection that has ended stays readable for ever.
  if (!connection_->pump({})) watch_.reset();
  std::erase_if(windows_, [](const auto& window) { return window->isClosed; });
}

RunningApplication PlasmaWindows::described(const Window& window) {
  RunningApplication application;
  // Where the process is not told, the number of the window stands for it.
  application.client = {window.process, window.number};
  application.window = window.number;
  application.bundleIdentifier = window.application;
  application.isPanel = window.application == "plasmashell" || window.application == "org.kde.plasmashell";
  if (const auto names = xWindows_.find(window.process)) {
    // The compositor reads the clipboard for programs of the X server.
    application.clipboardProxy = connection_->compositor();
    if (!names->windowClass.empty()) application.bundleIdentifier = names->windowClass;
    application.instanceName = names->instance;
  }
  if (const auto facts = factsOf(window.process)) application.startTime = facts->startTime;
  return application;
}

std::optional<RunningApplication> PlasmaWindows::frontmostApplication() {
  connection_->roundTrip();
  const auto active = std::ranges::find_if(
      windows_, [](const auto& window) { return window->isActive && !window->isClosed; });
  return active == windows_.end() ? std::nullopt : std::optional(described(**active));
}

PlasmaWindows::Window* PlasmaWindows::find(std::uint32_t number) {
  const auto found = std::ranges::find_if(
      windows_, [number](const auto& window) { return window->number == number && !window->isClosed; });
  return found == windows_.end() ? nullptr : found->get();
}

bool PlasmaWindows::isTerminated(const RunningApplication& application) {
  if (hasEnded(application.client.processIdentifier, application.startTime)) return true;
  connection_->roundTrip();
  return find(application.window) == nullptr;
}

void PlasmaWindows::activate(const RunningApplication& application) {
  if (const auto* window = find(application.window)) {
    constexpr auto active = ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE;
    org_kde_plasma_window_set_state(window->handle.get(), active, active);
    wl_display_flush(connection_->get());
  }
}

}  // namespace murmel
