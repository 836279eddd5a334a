#include "Platform/Linux/Wayland/ForeignToplevels.h"

#include <algorithm>
#include <span>
#include <utility>

namespace murmel {

namespace {

constexpr std::uint32_t newestVersion = 3;

}  // namespace

struct ForeignToplevels::Window {
  ForeignToplevels& owner;
  std::uint32_t number;
  WaylandObject<zwlr_foreign_toplevel_handle_v1> handle;
  std::string application{};
  bool isActive = false;
  bool isClosed = false;

  [[nodiscard]] RunningApplication described() const {
    RunningApplication described;
    // The number stands for the program, too: which process it is, is not told.
    described.client.connection = number;
    described.window = number;
    described.bundleIdentifier = application;
    return described;
  }
};

std::expected<std::unique_ptr<ForeignToplevels>, std::string> ForeignToplevels::open(Executor& executor) {
  auto connection = WaylandConnection::open();
  if (!connection) return std::unexpected(connection.error());
  auto* manager =
      (*connection)
          ->bind<zwlr_foreign_toplevel_manager_v1>(zwlr_foreign_toplevel_manager_v1_interface, newestVersion);
  if (manager == nullptr) return std::unexpected("The compositor does not tell of its windows.");
  std::unique_ptr<ForeignToplevels> windows(new ForeignToplevels(executor, *std::move(connection), manager));
  // The windows that are there are introduced first, and then described.
  if (!windows->connection_->roundTrip() || !windows->connection_->roundTrip())
    return std::unexpected("The Wayland compositor does not answer.");
  windows->activations_.begin();
  return windows;
}

ForeignToplevels::ForeignToplevels(Executor& executor, std::unique_ptr<WaylandConnection> connection,
                                   zwlr_foreign_toplevel_manager_v1* manager)
    : connection_(std::move(connection)),
      manager_(manager, &zwlr_foreign_toplevel_manager_v1_destroy),
      activations_(executor, [this] { return frontmostApplication(); }) {
  static constexpr zwlr_foreign_toplevel_manager_v1_listener listener{
      .toplevel =
          [](void* self, zwlr_foreign_toplevel_manager_v1* /*manager*/,
             zwlr_foreign_toplevel_handle_v1* handle) {
            static_cast<ForeignToplevels*>(self)->introduced(handle);
          },
      .finished = [](void* /*self*/, zwlr_foreign_toplevel_manager_v1* /*manager*/) {},
  };
  zwlr_foreign_toplevel_manager_v1_add_listener(manager_.get(), &listener, this);
  watch_ = executor.watchReadable(connection_->descriptor(), [this] { dispatch(); });
}

ForeignToplevels::~ForeignToplevels() = default;

void ForeignToplevels::introduced(zwlr_foreign_toplevel_handle_v1* handle) {
  using Handle = zwlr_foreign_toplevel_handle_v1*;
  static constexpr zwlr_foreign_toplevel_handle_v1_listener listener{
      .title = [](void* /*self*/, Handle /*handle*/, const char* /*title*/) {},
      .app_id = [](void* self, Handle /*handle*/,
                   const char* name) { static_cast<Window*>(self)->application = name; },
      .output_enter = [](void* /*self*/, Handle /*handle*/, wl_output* /*output*/) {},
      .output_leave = [](void* /*self*/, Handle /*handle*/, wl_output* /*output*/) {},
      .state =
          [](void* self, Handle /*handle*/, wl_array* states) {
            const std::span list(static_cast<const std::uint32_t*>(states->data),
                                 states->size / sizeof(std::uint32_t));
            static_cast<Window*>(self)->isActive =
                std::ranges::find(list, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) != list.end();
          },
      .done = [](void* self, Handle /*handle*/) { static_cast<Window*>(self)->owner.activations_.changed(); },
      .closed =
          [](void* self, Handle /*handle*/) {
            auto& window = *static_cast<Window*>(self);
            window.isClosed = true;
            window.owner.activations_.changed();
          },
      .parent = [](void* /*self*/, Handle /*handle*/, Handle /*parent*/) {},
  };
  windows_.push_back(std::make_unique<Window>(
      Window{*this, ++lastNumber_, {handle, &zwlr_foreign_toplevel_handle_v1_destroy}}));
  zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, windows_.back().get());
}

void ForeignToplevels::dispatch() {
  // A connection that has ended stays readable for ever.
  if (!connection_->pump({})) watch_.reset();
  std::erase_if(windows_, [](const auto& window) { return window->isClosed; });
}

std::optional<RunningApplication> ForeignToplevels::frontmostApplication() {
  connection_->roundTrip();
  const auto active = std::ranges::find_if(
      windows_, [](const auto& window) { return window->isActive && !window->isClosed; });
  return active == windows_.end() ? std::nullopt : std::optional((*active)->described());
}

ForeignToplevels::Window* ForeignToplevels::find(std::uint32_t number) {
  const auto found = std::ranges::find_if(
      windows_, [number](const auto& window) { return window->number == number && !window->isClosed; });
  return found == windows_.end() ? nullptr : found->get();
}

bool ForeignToplevels::isTerminated(const RunningApplication& application) {
  connection_->roundTrip();
  return find(application.window) == nullptr;
}

void ForeignToplevels::activate(const RunningApplication& application) {
  if (const auto* window = find(application.window)) {
    zwlr_foreign_toplevel_handle_v1_activate(window->handle.get(), connection_->seat());
    wl_display_flush(connection_->get());
  }
}

}  // namespace murmel
