#include "Platform/Linux/Portal/AccessibleWorkspace.h"

#include "Foundation/Async/Clock.h"
#include "Platform/Linux/Process/ProcessFacts.h"

#include <filesystem>
#include <utility>
#include <vector>

namespace murmel {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* windowEvents = "org.a11y.atspi.Event.Window";
constexpr const char* registry = "org.a11y.atspi.Registry";
constexpr std::uint32_t stateActive = 1U << 1;
/// A window's word about itself. A paste waits for it.
constexpr Duration patience = std::chrono::milliseconds(100);
/// For the first look, at the start of Murmel.
constexpr Duration lookPatience = std::chrono::milliseconds(500);

std::vector<std::pair<std::string, std::string>> childrenOf(SessionBus& bus, const std::string& application,
                                                            const char* path) {
  std::vector<std::pair<std::string, std::string>> children;
  const auto answer = bus.send(bus.newCall({application, path, accessible}, "GetChildren"), patience);
  if (!answer || sd_bus_message_enter_container(answer.get(), 'a', "(so)") < 0) return children;
  const char* name = nullptr;
  const char* object = nullptr;
  while (sd_bus_message_read(answer.get(), "(so)", &name, &object) > 0) children.emplace_back(name, object);
  return children;
}

}  // namespace

std::unique_ptr<AccessibleWorkspace> AccessibleWorkspace::open(
    Executor& executor, SessionBus& session, std::function<void(RunningApplication&)> complete) {
  const auto answer = session.call({"org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus"}, "GetAddress");
  const char* address = nullptr;
  if (!answer || sd_bus_message_read(answer.get(), "s", &address) < 0) return nullptr;
  auto bus = SessionBus::openAt(executor, address);
  if (!bus) return nullptr;
  return std::unique_ptr<AccessibleWorkspace>(
      new AccessibleWorkspace(executor, std::move(bus), std::move(complete)));
}

AccessibleWorkspace::AccessibleWorkspace(Executor& executor, std::unique_ptr<SessionBus> bus,
                                         std::function<void(RunningApplication&)> complete)
    : bus_(std::move(bus)),
      complete_(std::move(complete)),
      activations_(executor, [this] { return frontmostApplication(); }),
      activated_(bus_->onAnySignal(windowEvents, "Activate",
                                   [this](sd_bus_message* signal) { changed(signal, true); })),
      deactivated_(bus_->onAnySignal(windowEvents, "Deactivate",
                                     [this](sd_bus_message* signal) { changed(signal, false); })),
      registry_(bus_->onOwner(registry, [this](bool isThere) {
        if (isThere) announce();
      })) {
  announce();
  look();
  activations_.begin();
}

void AccessibleWorkspace::announce() {
  for (const char* event : {"window:activate", "window:deactivate"}) {
    auto call = bus_->newCall({registry, "/org/a11y/atspi/registry", registry}, "RegisterEvent");
    if (!call || sd_bus_message_append(call.get(), "sass", event, 0, "") < 0) return;
    // It belongs to the bus and comes with whoever asks for it first.
    sd_bus_message_set_auto_start(call.get(), 1);
    bus_->send(std::move(call));
  }
}

void AccessibleWorkspace::changed(sd_bus_message* signal, bool isActive) {
  Window window{sd_bus_message_get_sender(signal), sd_bus_message_get_path(signal)};
  if (isActive) {
    active_ = std::move(window);
  } else if (active_ == window) {
    active_.reset();
  }
  activations_.changed();
}

void AccessibleWorkspace::look() {
  const SystemClock clock;
  const auto end = clock.now() + lookPatience;
  for (const auto& application : childrenOf(*bus_, registry, "/org/a11y/atspi/accessible/root")) {
    for (const auto& window : childrenOf(*bus_, application.first, application.second.c_str())) {
      if (clock.now() >= end) return;
      if (!isActive(window)) continue;
      active_ = window;
      return;
    }
  }
}

bool AccessibleWorkspace::isActive(const Window& window) {
  const auto answer =
      bus_->send(bus_->newCall({window.first, window.second, accessible}, "GetState"), patience);
  const void* words = nullptr;
  std::size_t size = 0;
  return answer && sd_bus_message_read_array(answer.get(), 'u', &words, &size) >= 0 &&
         size >= sizeof(std::uint32_t) && (*static_cast<const std::uint32_t*>(words) & stateActive) != 0;
}

pid_t AccessibleWorkspace::processOf(const std::string& application) {
  const auto answer = bus_->call({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"},
                                 "GetConnectionUnixProcessID", "s", application.c_str());
  std::uint32_t process = 0;
  if (!answer || sd_bus_message_read(answer.get(), "u", &process) < 0) return 0;
  return static_cast<pid_t>(process);
}

std::optional<RunningApplication> AccessibleWorkspace::frontmostApplication() {
  const auto window = active_;
  if (!window || !isActive(*window)) return std::nullopt;
  RunningApplication application;
  application.client.processIdentifier = processOf(window->first);
  if (application.client.processIdentifier == 0) return std::nullopt;
  const auto next = static_cast<std::uint32_t>(numbers_.size() + 1);
  application.window = numbers_.try_emplace(*window, next).first->second;
  // What the windows of a program are called is not told; its file is.
  std::error_code unseen;
  const auto file = std::filesystem::read_symlink(
      "/proc/" + std::to_string(application.client.processIdentifier) + "/exe", unseen);
  application.bundleIdentifier = file.filename().string();
  if (const auto facts = factsOf(application.client.processIdentifier))
    application.startTime = facts->startTime;
  complete_(application);
  return application;
}

bool AccessibleWorkspace::isTerminated(const RunningApplication& application) {
  return hasEnded(application.client.processIdentifier, application.startTime);
}

}  // namespace murmel
