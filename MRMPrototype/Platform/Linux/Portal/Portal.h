#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/Linux/Bus/SessionBus.h"

#include <cstdint>
#include <functional>
#include <string>

namespace murmel {

/// The desktop's portal (xdg-desktop-portal), by which a program asks for what the desktop may ask the user
/// about. Main thread.
class Portal {
 public:
  static constexpr const char* service = "org.freedesktop.portal.Desktop";

  /// Makes the connection known to the portal as the application's, before there are words in memory: for
  /// that the process may be looked into. A portal that comes in place of this one may refuse it. `bus`
  /// outlives this.
  Portal(SessionBus& bus, std::string application);

  /// A name for a request or a session of this connection, and the object by which the portal tells of it.
  struct Token {
    std::string name;
    std::string object;
  };
  [[nodiscard]] Token request() { return token("request"); }
  [[nodiscard]] Token session() { return token("session"); }

  [[nodiscard]] SessionBus& bus() const { return bus_; }
  /// One of the portal's interfaces ("RemoteDesktop").
  [[nodiscard]] static BusObject interface(const char* name);
  [[nodiscard]] static BusObject sessionObject(const Token& session);

  /// How a request ended, after a dialog maybe: 0 when it was granted. `results` holds "a{sv}".
  using Answered = std::function<void(std::uint32_t refusal, sd_bus_message* results)>;
  [[nodiscard]] Registration onAnswer(const Token& request, Answered answered);
  /// The end of a session, whoever wanted it.
  [[nodiscard]] Registration onEnd(const Token& session, const std::function<void()>& ended);
  /// The portal was gone and is there again.
  [[nodiscard]] Signal<>& returned() { return returned_; }

 private:
  [[nodiscard]] Token token(const std::string& kind);
  void introduce();

  SessionBus& bus_;
  std::string application_;
  int tokens_ = 0;
  Signal<> returned_;
  Registration owner_;
};

}  // namespace murmel
