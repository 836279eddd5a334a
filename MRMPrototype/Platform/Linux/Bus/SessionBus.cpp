#include "Platform/Linux/Bus/SessionBus.h"

#include <algorithm>
#include <utility>

namespace murmel {

std::unique_ptr<SessionBus> SessionBus::open(Executor& executor) {
  sd_bus* opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) return nullptr;
  return std::unique_ptr<SessionBus>(new SessionBus(executor, opened));
}

std::unique_ptr<SessionBus> SessionBus::openAt(Executor& executor, const std::string& address) {
  sd_bus* created = nullptr;
  if (sd_bus_new(&created) < 0) return nullptr;
  std::unique_ptr<sd_bus, CloseBus> bus(created);
  if (sd_bus_set_address(created, address.c_str()) < 0 || sd_bus_set_bus_client(created, 1) < 0 ||
      sd_bus_start(created) < 0)
    return nullptr;
  return std::unique_ptr<SessionBus>(new SessionBus(executor, bus.release()));
}

SessionBus::SessionBus(Executor& executor, sd_bus* bus)
    : executor_(executor),
      bus_(bus),
      watch_(executor.watchReadable(sd_bus_get_fd(bus), [this] { process(); })) {}

SessionBus::~SessionBus() = default;

BusMessage SessionBus::newCall(const BusObject& object, const char* member) {
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &message, object.service.c_str(), object.path.c_str(),
                                 object.interface.c_str(), member);
  if (message != nullptr) sd_bus_message_set_auto_start(message, 0);
  return BusMessage(message);
}

BusMessage SessionBus::send(BusMessage call, Duration limit) {
  if (!call) return nullptr;
  sd_bus_message* answer = nullptr;
  const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(limit).count();
  const int status =
      sd_bus_call(bus_.get(), call.get(), static_cast<std::uint64_t>(microseconds), nullptr, &answer);
  // Signals that came meanwhile have been taken off the socket: nothing will say that they are there.
  executor_.post([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) process();
  });
  return BusMessage(status < 0 ? nullptr : answer);
}

void SessionBus::tell(BusMessage call) {
  if (!call) return;
  sd_bus_message_set_expect_reply(call.get(), 0);
  sd_bus_send(bus_.get(), call.get(), nullptr);
  sd_bus_flush(bus_.get());
}

Registration SessionBus::onMatch(const std::string& match, Handler handler) {
  struct Subscription {
    std::shared_ptr<Handler> handler;
    sd_bus_slot* slot = nullptr;
  };
  auto subscription = std::make_unique<Subscription>();
  subscription->handler = std::make_shared<Handler>(std::move(handler));
  const auto told = [](sd_bus_message* message, void* subscribed, sd_bus_error* /*error*/) {
    const auto kept = static_cast<Subscription*>(subscribed)->handler;
    (*kept)(message);
    return 0;
  };
  if (sd_bus_add_match(bus_.get(), &subscription->slot, match.c_str(), told, subscription.get()) < 0)
    return {};
  return Registration([subscription = std::move(subscription), alive = std::weak_ptr(alive_)] {
    // With the connection its slots have gone.
    if (!alive.expired()) sd_bus_slot_unref(subscription->slot);
  });
}

std::string SessionBus::ownName() const {
  const char* name = nullptr;
  return sd_bus_get_unique_name(bus_.get(), &name) < 0 ? ":" : name;
}

std::string SessionBus::ownerOf(const std::string& service) {
  const auto answer = call({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"},
                           "GetNameOwner", "s", service.c_str());
  const char* owner = nullptr;
  if (!answer || sd_bus_message_read(answer.get(), "s", &owner) < 0) return {};
  return owner;
}

Registration SessionBus::onSignal(const BusObject& object, const char* member, Handler handler) {
  // Signals come under the name that nobody else can have.
  const auto owner = ownerOf(object.service);
  if (owner.empty()) return {};
  return onMatch("type='signal',sender='" + owner + "',path='" + object.path + "',interface='" +
                     object.interface + "',member='" + member + "'",
                 std::move(handler));
}

Registration SessionBus::onAnySignal(const char* interface, const char* member, Handler handler) {
  return onMatch(std::string("type='signal',interface='") + interface + "',member='" + member + "'",
                 std::move(handler));
}

Registration SessionBus::onOwner(const std::string& service, std::function<void(bool)> handler) {
  return onMatch(
      "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" + service + "'",
      [handler = std::move(handler)](sd_bus_message* signal) {
        const char* name = nullptr;
        const char* before = nullptr;
        const char* after = nullptr;
        if (sd_bus_message_read(signal, "sss", &name, &before, &after) >= 0) handler(*after != '\0');
      });
}

void SessionBus::waitUntil(const std::function<bool()>& condition, Duration limit) {
  const SystemClock clock;
  const auto end = clock.now() + limit;
  process();
  while (!condition() && isOpen() && clock.now() < end) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - clock.now());
    sd_bus_wait(bus_.get(), static_cast<std::uint64_t>(std::max<std::int64_t>(left.count(), 0)));
    process();
  }
}

void SessionBus::process() {
  const std::weak_ptr<int> alive = alive_;
  const std::unique_ptr<sd_bus, decltype(&sd_bus_unref)> kept(sd_bus_ref(bus_.get()), &sd_bus_unref);
  int progress = 1;
  while (progress > 0 && !alive.expired()) progress = sd_bus_process(kept.get(), nullptr);
  // A connection that has ended stays readable for ever.
  if (progress < 0 && !alive.expired() && !isOpen()) watch_.reset();
}

}  // namespace murmel
