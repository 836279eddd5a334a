#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include <systemd/sd-bus.h>

namespace murmel {

struct UnrefBusMessage {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BusMessage = std::unique_ptr<sd_bus_message, UnrefBusMessage>;

/// An object on the bus, seen through one of its interfaces.
struct BusObject {
  std::string service;
  std::string path;
  std::string interface;
};

/// A connection to the session bus of this process's own. Main thread; nothing waits longer than it says.
class SessionBus {
 public:
  static constexpr Duration answerLimit = std::chrono::seconds(1);
  using Handler = std::function<void(sd_bus_message* signal)>;

  /// Null where there is no bus. The executor outlives this.
  static std::unique_ptr<SessionBus> open(Executor& executor);
  /// Another bus of the session's, at this address.
  static std::unique_ptr<SessionBus> openAt(Executor& executor, const std::string& address);
  ~SessionBus();
  SessionBus(const SessionBus&) = delete;
  SessionBus& operator=(const SessionBus&) = delete;

  [[nodiscard]] bool isOpen() const { return sd_bus_is_open(bus_.get()) > 0; }

  [[nodiscard]] BusMessage newCall(const BusObject& object, const char* member);
  /// The answer; null for an error, and when there is none in time.
  BusMessage send(BusMessage call, Duration limit = answerLimit);
  /// Calls with these arguments, as sd_bus_message_append takes them.
  template <class... Arguments>
  BusMessage call(const BusObject& object, const char* member, const char* types = "",
                  Arguments... arguments) {
    auto message = newCall(object, member);
    if (!message || sd_bus_message_append(message.get(), types, arguments...) < 0) return nullptr;
    return send(std::move(message));
  }
  /// Sends without waiting for anything.
  template <class... Arguments>
  void tell(const BusObject& object, const char* member, const char* types = "", Arguments... arguments) {
    auto message = newCall(object, member);
    if (message && sd_bus_message_append(message.get(), types, arguments...) >= 0) tell(std::move(message));
  }
  void tell(BusMessage call);

  /// Hears what has come by now.
  void process();
  /// Hears what comes until the condition holds, at most so long.
  void waitUntil(const std::function<bool()>& condition, Duration limit);

  /// The name that the bus has given to this connection.
  [[nodiscard]] std::string ownName() const;
  /// The name that the bus has given to whoever has this service now; empty when nobody has it.
  [[nodiscard]] std::string ownerOf(const std::string& service);
  /// Of whoever has the service now. `handler` runs from the event loop and may destroy whatever it likes,
  /// this too.
  [[nodiscard]] Registration onSignal(const BusObject& object, const char* member, Handler handler);
  /// Of anybody.
  [[nodiscard]] Registration onAnySignal(const char* interface, const char* member, Handler handler);
  /// Tells when a service comes (true) or goes.
  [[nodiscard]] Registration onOwner(const std::string& service, std::function<void(bool isThere)> handler);

 private:
  struct CloseBus {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
  };

  SessionBus(Executor& executor, sd_bus* bus);
  [[nodiscard]] Registration onMatch(const std::string& match, Handler handler);

  Executor& executor_;
  std::unique_ptr<sd_bus, CloseBus> bus_;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
  Registration watch_;
};

}  // namespace murmel
