#include "Platform/Linux/Accessibility/AccessibleFocusedField.h"

#include <cerrno>
#include <utility>

#include <systemd/sd-bus.h>

namespace murmel {

namespace {

/// Answers come within a few milliseconds; an application that hangs must not hold up a delivery.
constexpr Duration patience = std::chrono::milliseconds(50);
constexpr std::uint64_t patienceMicroseconds =
    std::chrono::duration_cast<std::chrono::microseconds>(patience).count();

/// ATSPI_ROLE_PASSWORD_TEXT.
constexpr std::uint32_t passwordText = 40;

/// Where the accessibility bus listens; nothing when it does not run. It is not started for us.
std::optional<std::string> addressOfTheBus() {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return std::nullopt;
  const std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)> session(opened,
                                                                             &sd_bus_flush_close_unref);
  sd_bus_message* call = nullptr;
  std::optional<std::string> address;
  if (sd_bus_message_new_method_call(session.get(), &call, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus",
                                     "GetAddress") >= 0) {
    sd_bus_message_set_auto_start(call, 0);
    sd_bus_message* reply = nullptr;
    const char* text = nullptr;
    if (sd_bus_call(session.get(), call, patienceMicroseconds, nullptr, &reply) >= 0 &&
        sd_bus_message_read(reply, "s", &text) >= 0)
      address = text;
    sd_bus_message_unref(reply);
  }
  sd_bus_message_unref(call);
  return address;
}

}  // namespace

void AccessibleFocusedField::BusDeleter::operator()(sd_bus* bus) const {
  sd_bus_close_unref(bus);
}

void AccessibleFocusedField::SlotDeleter::operator()(sd_bus_slot* slot) const {
  sd_bus_slot_unref(slot);
}

void AccessibleFocusedField::MessageDeleter::operator()(sd_bus_message* message) const {
  sd_bus_message_unref(message);
}

AccessibleFocusedField::AccessibleFocusedField(Executor& executor) : executor_(executor) {}

AccessibleFocusedField::~AccessibleFocusedField() {
  disconnect();
}

void AccessibleFocusedField::disconnect() {
  watch_.reset();
  focusChanges_.reset();
  bus_.reset();
  focused_.reset();
}

bool AccessibleFocusedField::connect() {
  if (bus_ && sd_bus_is_open(bus_.get()) > 0) return true;
  disconnect();
  const auto address = addressOfTheBus();
  sd_bus* created = nullptr;
  if (!address || sd_bus_new(&created) < 0) return false;
  bus_.reset(created);
  sd_bus_slot* slot = nullptr;
  const auto handler = [](sd_bus_message* message, void* self, sd_bus_error* error) {
    return focusChanged(message, self, error);
  };
  const bool listens =
      sd_bus_set_address(created, address->c_str()) >= 0 && sd_bus_set_bus_client(created, 1) >= 0 &&
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

void AccessibleFocusedField::process() {
  int progress = 1;
  while (progress > 0) progress = sd_bus_process(bus_.get(), nullptr);
  // The bus has gone: another one may be there at the next question.
  if (progress < 0) disconnect();
}

int AccessibleFocusedField::focusChanged(sd_bus_message* message, void* self, void* /*error*/) {
  auto& field = *static_cast<AccessibleFocusedField*>(self);
  const char* state = nullptr;
  std::int32_t isFocused = 0;
  if (sd_bus_message_read(message, "si", &state, &isFocused) < 0) return 0;
  const std::string application = sd_bus_message_get_sender(message);
  const std::string object = sd_bus_message_get_path(message);
  if (isFocused != 0) {
    field.focused_ = Focus{application, object};
  } else if (field.focused_ && field.focused_->application == application &&
             field.focused_->object == object) {
    field.focused_.reset();
  }
  return 0;
}

AccessibleFocusedField::Message AccessibleFocusedField::newCall(const std::string& destination,
                                                                const std::string& object,
                                                                const char* interface, const char* member) {
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &call, destination.c_str(), object.c_str(), interface, member);
  return Message(call);
}

Task<std::optional<std::uint32_t>> AccessibleFocusedField::ask(Message call) {
  struct Question {
    Executor& executor;
    std::optional<OneShotSender<std::uint32_t>> sender;
  };
  if (!call) co_return std::nullopt;
  auto [sender, receiver] = makeOneShot<std::uint32_t>();
  const auto question = std::make_shared<Question>(Question{executor_, std::nullopt});
  question->sender.emplace(std::move(sender));
  const auto answered = [](sd_bus_message* reply, void* asked, sd_bus_error* /*error*/) {
    auto& open = *static_cast<Question*>(asked);
    std::uint32_t value = 0;
    auto waiting = std::exchange(open.sender, std::nullopt);
    const bool isValue =
        sd_bus_message_is_method_error(reply, nullptr) == 0 && sd_bus_message_read(reply, "u", &value) >= 0;
    if (!waiting) return 0;
    // Whoever waits goes on from the loop: the bus is not to be used from inside its own callback.
    open.executor.post([answer = *std::move(waiting), isValue, value]() mutable {
      if (isValue) answer.send(value);
    });
    return 0;
  };
  sd_bus_slot* slot = nullptr;
  if (sd_bus_call_async(bus_.get(), &slot, call.get(), answered, question.get(), 0) < 0)
    co_return std::nullopt;
  const std::unique_ptr<sd_bus_slot, SlotDeleter> pending(slot);
  const auto limit = executor_.after(patience, [question] { question->sender.reset(); });
  const auto answer = co_await receiver;
  co_return answer;
}

Task<bool> AccessibleFocusedField::hidesText(RunningApplication application) {
  if (!connect()) co_return false;
  process();
  if (!focused_ || !bus_) co_return false;
  const auto focus = *focused_;
  auto processCall = newCall("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                             "GetConnectionUnixProcessID");
  if (!processCall || sd_bus_message_append(processCall.get(), "s", focus.application.c_str()) < 0)
    co_return false;
  auto askingProcess = ask(std::move(processCall));
  const auto owner = co_await askingProcess;
  if (!owner || static_cast<pid_t>(*owner) != application.client.processIdentifier || !bus_) co_return false;
  auto askingRole = ask(newCall(focus.application, focus.object, "org.a11y.atspi.Accessible", "GetRole"));
  const auto role = co_await askingRole;
  co_return role == passwordText;
}

}  // namespace murmel
