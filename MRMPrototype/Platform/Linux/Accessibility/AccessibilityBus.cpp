#include "Platform/Linux/Accessibility/AccessibilityBus.h"

#include <utility>

#include <systemd/sd-bus.h>

namespace murmel {

namespace {

constexpr auto accessible = "org.a11y.atspi.Accessible";

struct Unreference {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};

/// What the session's service says that runs the bus, which is not started for us; null without an answer.
std::unique_ptr<sd_bus_message, Unreference> askService(Duration patience, const char* interface,
                                                        const char* member, const char* property = nullptr) {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return nullptr;
  const std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)> session(opened,
                                                                             &sd_bus_flush_close_unref);
  sd_bus_message* created = nullptr;
  if (sd_bus_message_new_method_call(opened, &created, "org.a11y.Bus", "/org/a11y/bus", interface, member) <
      0)
    return nullptr;
  const std::unique_ptr<sd_bus_message, Unreference> call(created);
  sd_bus_message_set_auto_start(created, 0);
  if (property != nullptr) sd_bus_message_append(created, "ss", "org.a11y.Status", property);
  sd_bus_message* reply = nullptr;
  const auto limit = std::chrono::duration_cast<std::chrono::microseconds>(patience).count();
  sd_bus_call(opened, created, static_cast<std::uint64_t>(limit), nullptr, &reply);
  return std::unique_ptr<sd_bus_message, Unreference>(reply);
}

}  // namespace

void AccessibilityBus::BusDeleter::operator()(sd_bus* bus) const {
  sd_bus_close_unref(bus);
}

void AccessibilityBus::SlotDeleter::operator()(sd_bus_slot* slot) const {
  sd_bus_slot_unref(slot);
}

void AccessibilityBus::MessageDeleter::operator()(sd_bus_message* message) const {
  sd_bus_message_unref(message);
}

AccessibilityBus::AccessibilityBus(Executor& executor, Duration patience,
                                   std::function<void(const AccessibleObject&, bool)> onFocus)
    : executor_(executor), patience_(patience), onFocus_(std::move(onFocus)) {}

AccessibilityBus::~AccessibilityBus() {
  disconnect();
}

AccessibleObject AccessibilityBus::desktop() {
  return {"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
}

void AccessibilityBus::disconnect() {
  watch_.reset();
  focusChanges_.reset();
  bus_.reset();
}

bool AccessibilityBus::connect() {
  if (bus_ && sd_bus_is_open(bus_.get()) > 0) return true;
  disconnect();
  const auto answer = askService(patience_, "org.a11y.Bus", "GetAddress");
  const char* address = nullptr;
  sd_bus* created = nullptr;
  if (!answer || sd_bus_message_read(answer.get(), "s", &address) < 0 || sd_bus_new(&created) < 0)
    return false;
  bus_.reset(created);
  ++connectionNumber_;
  sd_bus_slot* slot = nullptr;
  const auto handler = [](sd_bus_message* message, void* self, sd_bus_error* error) {
    return focusChanged(message, self, error);
  };
  const bool listens =
      sd_bus_set_address(created, address) >= 0 && sd_bus_set_bus_client(created, 1) >= 0 &&
      sd_bus_start(created) >= 0 &&
      sd_bus_add_match_async(created, &slot,
                             "type='signal',interface='org.a11y.atspi.Event.Object',member='StateChanged',"
                             "arg0='focused'",
                             handler, nullptr, this) >= 0;
  focusChanges_.reset(slot);
  if (!listens) {
    disconnect();
    return false;
  }
  // Applications tell only of what somebody has asked for.
  sd_bus_call_method_async(created, nullptr, "org.a11y.atspi.Registry", "/org/a11y/atspi/registry",
                           "org.a11y.atspi.Registry", "RegisterEvent", nullptr, nullptr, "sass",
                           "object:state-changed:focused", 0, "");
  watch_ = executor_.watchReadable(sd_bus_get_fd(created), [this] { process(); });
  process();
  return true;
}

bool AccessibilityBus::isForAll() const {
  const auto answer = askService(patience_, "org.freedesktop.DBus.Properties", "Get", "IsEnabled");
  int enabled = 0;
  return answer && sd_bus_message_read(answer.get(), "v", "b", &enabled) >= 0 && enabled != 0;
}

void AccessibilityBus::process() {
  int progress = bus_ ? 1 : 0;
  while (progress > 0) progress = sd_bus_process(bus_.get(), nullptr);
  // The bus has gone: another one may be there at the next question.
  if (progress < 0) disconnect();
}

int AccessibilityBus::focusChanged(sd_bus_message* message, void* self, void* /*error*/) {
  const char* state = nullptr;
  std::int32_t isFocused = 0;
  if (sd_bus_message_read(message, "si", &state, &isFocused) < 0) return 0;
  static_cast<AccessibilityBus*>(self)->onFocus_(
      {sd_bus_message_get_sender(message), sd_bus_message_get_path(message)}, isFocused != 0);
  return 0;
}

AccessibilityBus::Message AccessibilityBus::newCall(const AccessibleObject& object, const char* interface,
                                                    const char* member) {
  sd_bus_message* call = nullptr;
  if (bus_)
    sd_bus_message_new_method_call(bus_.get(), &call, object.application.c_str(), object.path.c_str(),
                                   interface, member);
  return Message(call);
}

Task<AccessibilityBus::Message> AccessibilityBus::ask(Message call) {
  struct Question {
    Executor& executor;
    std::optional<OneShotSender<Message>> sender;
  };
  if (!call || !bus_) co_return Message();
  auto [sender, receiver] = makeOneShot<Message>();
  const auto question = std::make_shared<Question>(Question{executor_, std::nullopt});
  question->sender.emplace(std::move(sender));
  const auto answered = [](sd_bus_message* reply, void* asked, sd_bus_error* /*error*/) {
    auto& open = *static_cast<Question*>(asked);
    auto waiting = std::exchange(open.sender, std::nullopt);
    if (!waiting) return 0;
    Message answer(sd_bus_message_ref(reply));
    // Whoever waits goes on from the loop: the bus is not to be used from inside its own callback.
    open.executor.post(
        [to = *std::move(waiting), answer = std::move(answer)]() mutable { to.send(std::move(answer)); });
    return 0;
  };
  sd_bus_slot* slot = nullptr;
  if (sd_bus_call_async(bus_.get(), &slot, call.get(), answered, question.get(), 0) < 0) co_return Message();
  const std::unique_ptr<sd_bus_slot, SlotDeleter> pending(slot);
  const auto limit = executor_.after(patience_, [question] { question->sender.reset(); });
  auto answer = co_await receiver;
  if (!answer) co_return Message();
  co_return *std::move(answer);
}

Task<std::optional<pid_t>> AccessibilityBus::processOf(std::string application) {
  auto call = newCall({"org.freedesktop.DBus", "/org/freedesktop/DBus"}, "org.freedesktop.DBus",
                      "GetConnectionUnixProcessID");
  if (call) sd_bus_message_append(call.get(), "s", application.c_str());
  auto asking = ask(std::move(call));
  const auto answer = co_await asking;
  std::uint32_t process = 0;
  if (!answer || sd_bus_message_read(answer.get(), "u", &process) < 0) co_return std::nullopt;
  co_return static_cast<pid_t>(process);
}

Task<std::optional<std::uint32_t>> AccessibilityBus::role(AccessibleObject object) {
  auto asking = ask(newCall(object, accessible, "GetRole"));
  const auto answer = co_await asking;
  std::uint32_t role = 0;
  if (!answer || sd_bus_message_read(answer.get(), "u", &role) < 0) co_return std::nullopt;
  co_return role;
}

Task<std::optional<std::uint64_t>> AccessibilityBus::states(AccessibleObject object) {
  auto asking = ask(newCall(object, accessible, "GetState"));
  const auto answer = co_await asking;
  const void* words = nullptr;
  std::size_t size = 0;
  if (!answer || sd_bus_message_read_array(answer.get(), 'u', &words, &size) < 0) co_return std::nullopt;
  const auto* word = static_cast<const std::uint32_t*>(words);
  std::uint64_t states = 0;
  if (size >= sizeof(std::uint32_t)) states = word[0];
  if (size >= 2 * sizeof(std::uint32_t)) states |= static_cast<std::uint64_t>(word[1]) << 32;
  co_return states;
}

Task<std::optional<std::vector<AccessibleObject>>> AccessibilityBus::children(AccessibleObject object) {
  auto asking = ask(newCall(object, accessible, "GetChildren"));
  const auto answer = co_await asking;
  if (!answer) co_return std::nullopt;
  std::vector<AccessibleObject> found;
  if (sd_bus_message_enter_container(answer.get(), 'a', "(so)") < 0) co_return found;
  const char* application = nullptr;
  const char* path = nullptr;
  while (sd_bus_message_read(answer.get(), "(so)", &application, &path) > 0)
    found.push_back({application, path});
  co_return found;
}

Task<std::optional<AccessibleObject>> AccessibilityBus::parent(AccessibleObject object) {
  auto call = newCall(object, "org.freedesktop.DBus.Properties", "Get");
  if (call) sd_bus_message_append(call.get(), "ss", accessible, "Parent");
  auto asking = ask(std::move(call));
  const auto answer = co_await asking;
  const char* application = nullptr;
  const char* path = nullptr;
  if (!answer || sd_bus_message_read(answer.get(), "v", "(so)", &application, &path) < 0)
    co_return std::nullopt;
  co_return AccessibleObject{application, path};
}

}  // namespace murmel
