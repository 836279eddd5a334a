#include "Platform/Linux/Portal/Portal.h"

#include "Platform/Linux/Process/VisibleExecutable.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

const std::string path = "/org/freedesktop/portal/desktop";

}  // namespace

Portal::Portal(SessionBus& bus, std::string application)
    : bus_(bus), application_(std::move(application)), owner_(bus.onOwner(service, [this](bool isThere) {
        if (!isThere) return;
        introduce();
        returned_.emit();
      })) {
  // The portal looks at the process of whoever calls first on a connection, and remembers what it is.
  const VisibleExecutable visible;
  introduce();
  bus_.call(interface("Settings"), "Read", "ss", "org.freedesktop.appearance", "color-scheme");
}

void Portal::introduce() {
  // Before anything else is asked; portals before 1.20 find the application out by themselves, or do without.
  bus_.call({service, path, "org.freedesktop.host.portal.Registry"}, "Register", "sa{sv}",
            application_.c_str(), 0);
}

BusObject Portal::interface(const char* name) {
  return {service, path, std::string("org.freedesktop.portal.") + name};
}

BusObject Portal::sessionObject(const Token& session) {
  return {service, session.object, "org.freedesktop.portal.Session"};
}

Portal::Token Portal::token(const std::string& kind) {
  auto sender = bus_.ownName().substr(1);
  std::ranges::replace(sender, '.', '_');
  auto name = "murmel" + std::to_string(++tokens_);
  auto object = path + "/" + kind + "/" + sender + "/" + name;
  return {std::move(name), std::move(object)};
}

Registration Portal::onAnswer(const Token& request, Answered answered) {
  return bus_.onSignal({service, request.object, "org.freedesktop.portal.Request"}, "Response",
                       [answered = std::move(answered), isOver = false](sd_bus_message* signal) mutable {
                         // Some answer twice.
                         if (std::exchange(isOver, true)) return;
                         std::uint32_t refusal = 1;
                         sd_bus_message_read(signal, "u", &refusal);
                         const auto told = answered;
                         told(refusal, signal);
                       });
}

Registration Portal::onEnd(const Token& session, const std::function<void()>& ended) {
  return bus_.onSignal(sessionObject(session), "Closed", [ended](sd_bus_message* /*signal*/) {
    const auto told = ended;
    told();
  });
}

}  // namespace murmel
