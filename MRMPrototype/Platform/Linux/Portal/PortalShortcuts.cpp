#include "Platform/Linux/Portal/PortalShortcuts.h"

#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace murmel {

namespace {

const std::string service = "org.freedesktop.portal.Desktop";
const std::string path = "/org/freedesktop/portal/desktop";
const BusObject portal{service, path, "org.freedesktop.portal.GlobalShortcuts"};
constexpr const char* shortcutName = "dictate";
constexpr const char* description = "Hold to dictate";

/// A name for a request or a session of this connection, and the path by which the portal then tells of it.
struct Token {
  Token(const SessionBus& bus, const std::string& kind) {
    static int count = 0;
    name = "murmel" + std::to_string(++count);
    auto sender = bus.ownName().substr(1);
    std::ranges::replace(sender, '.', '_');
    object = path + "/" + kind + "/" + sender + "/" + name;
  }
  std::string name;
  std::string object;
};

}  // namespace

/// From the request to have the shortcut watched to the end of that.
class PortalShortcuts::Session final : public InstalledShortcut {
 public:
  Session(PortalShortcuts& owner, std::string trigger, Handler handler)
      : owner_(owner),
        bus_(owner.bus_),
        trigger_(std::move(trigger)),
        handler_(std::move(handler)),
        session_(bus_, "session") {
    owned_ = bus_.onOwner(service, [this](bool isThere) {
      if (!isThere) end(Standing::untold);
    });
    closed_ = bus_.onSignal({service, session_.object, "org.freedesktop.portal.Session"}, "Closed",
                            [this](sd_bus_message* /*signal*/) { end(Standing::untold); });
    const Token request(bus_, "request");
    auto call = bus_.newCall(portal, "CreateSession");
    // Some portals of KDE bind here what others bind by the next call.
    isOpen_ = call &&
              sd_bus_message_append(call.get(), "a{sv}", 3, "handle_token", "s", request.name.c_str(),
                                    "session_handle_token", "s", session_.name.c_str(), "shortcuts",
                                    "a(sa{sv})", 1, shortcutName, 2, "description", "s", description,
                                    "preferred_trigger", "s", trigger_.c_str()) >= 0 &&
              send(std::move(call), request, [this] { bind(); });
  }
  ~Session() override {
    if (isOpen_) bus_.tell({service, session_.object, "org.freedesktop.portal.Session"}, "Close");
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  bool enable() override { return isOpen_; }

 private:
  /// Sends what is answered by a signal, after a dialog maybe. Whoever has answered may destroy this.
  bool send(BusMessage call, const Token& request, std::function<void()> granted) {
    answered_ = bus_.onSignal({service, request.object, "org.freedesktop.portal.Request"}, "Response",
                              [this, granted = std::move(granted)](sd_bus_message* signal) {
                                std::uint32_t refusal = 1;
                                sd_bus_message_read(signal, "u", &refusal);
                                const auto next = granted;
                                if (refusal == 0) {
                                  next();
                                } else {
                                  end(Standing::refused);
                                }
                              });
    return bus_.send(std::move(call)) != nullptr;
  }

  void bind() {
    for (const auto& [member, activity] :
         {std::pair{"Activated", ShortcutActivity::pressed}, {"Deactivated", ShortcutActivity::released}}) {
      auto& heard = activity == ShortcutActivity::pressed ? pressed_ : released_;
      heard = bus_.onSignal(portal, member, [this, activity = activity](sd_bus_message* signal) {
        const char* session = nullptr;
        const char* shortcut = nullptr;
        if (sd_bus_message_read(signal, "os", &session, &shortcut) < 0 || session != session_.object ||
            std::string_view(shortcut) != shortcutName)
          return;
        // A key that is held repeats: KDE's portal tells of that as of presses.
        const bool goesDown = activity == ShortcutActivity::pressed;
        if (std::exchange(isHeld_, goesDown) == goesDown) return;
        auto& owner = owner_;
        const auto told = handler_;
        told(activity);
        owner.stands(Standing::heard);
      });
    }
    const Token request(bus_, "request");
    auto call = bus_.newCall(portal, "BindShortcuts");
    const bool isSent =
        call &&
        sd_bus_message_append(call.get(), "oa(sa{sv})sa{sv}", session_.object.c_str(), 1, shortcutName, 2,
                              "description", "s", description, "preferred_trigger", "s", trigger_.c_str(), "",
                              1, "handle_token", "s", request.name.c_str()) >= 0 &&
        send(std::move(call), request, [] {});
    if (!isSent) end(Standing::refused);
  }

  void end(Standing standing) {
    if (!std::exchange(isOpen_, false)) return;
    auto& owner = owner_;
    const auto told = handler_;
    told(ShortcutActivity::lost);
    owner.stands(standing);
  }

  PortalShortcuts& owner_;
  SessionBus& bus_;
  std::string trigger_;
  Handler handler_;
  Token session_;
  bool isOpen_ = false;
  bool isHeld_ = false;
  Registration owned_;
  Registration closed_;
  Registration answered_;
  Registration pressed_;
  Registration released_;
};

PortalShortcuts::PortalShortcuts(SessionBus& bus, const UsersKeymap& keymap, const std::string& application)
    : bus_(bus), keymap_(keymap) {
  // Before anything else is asked; portals before 1.20 find the application out by themselves, or do without.
  if (auto call = bus_.newCall({service, path, "org.freedesktop.host.portal.Registry"}, "Register");
      call && sd_bus_message_append(call.get(), "sa{sv}", application.c_str(), 0) >= 0)
    bus_.send(std::move(call));
}

/// In the words that portals know; empty for what it has no words for.
std::string PortalShortcuts::triggerOf(const ShortcutRequest& shortcut) const {
  const auto key = evdevFromVirtualKey(shortcut.keyCode);
  const auto symbol = key ? keymap_.symbolOf(*key) : std::nullopt;
  std::array<char, 64> name{};
  if (shortcut.kind != ShortcutRequest::Kind::key || (shortcut.modifiers & keyModifier::function) != 0 ||
      !symbol || xkb_keysym_get_name(*symbol, name.data(), name.size()) <= 0)
    return {};
  std::string trigger;
  for (const auto& [flag, modifier] : {std::pair{keyModifier::shift, "SHIFT+"},
                                       {keyModifier::control, "CTRL+"},
                                       {keyModifier::option, "ALT+"},
                                       {keyModifier::command, "LOGO+"}}) {
    if ((shortcut.modifiers & flag) != 0) trigger += modifier;
  }
  return trigger + name.data();
}

ListenEventAccess PortalShortcuts::permission(const ShortcutRequest& shortcut) {
  if (triggerOf(shortcut).empty())
    return {false, "This desktop cannot hear this key. Choose another one, F10 or Ctrl+Space for instance."};
  switch (standing_) {
    case Standing::heard:
      return {true, {}};
    case Standing::refused:
      return {false,
              "The desktop did not bind the shortcut. Bind a key to the command “murmel toggle” in its "
              "settings."};
    case Standing::untold:
      break;
  }
  return {
      true,
      "Press the shortcut once: whether this desktop tells of it is known then. If nothing happens, bind a "
      "key to the command “murmel toggle” in its settings."};
}

void PortalShortcuts::stands(Standing standing) {
  if (std::exchange(standing_, standing) != standing) permissionDidChange_.emit();
}

std::unique_ptr<InstalledShortcut> PortalShortcuts::install(const ShortcutRequest& shortcut,
                                                            Handler handler) {
  const auto trigger = triggerOf(shortcut);
  if (trigger.empty() || !installed_.expired()) return nullptr;
  /// Its end frees the place for the next.
  struct Counted final : InstalledShortcut {
    bool enable() override { return session->enable(); }
    std::shared_ptr<Session> session;
  };
  auto counted = std::make_unique<Counted>();
  counted->session = std::make_shared<Session>(*this, trigger, std::move(handler));
  if (!counted->enable()) return nullptr;
  installed_ = counted->session;
  return counted;
}

}  // namespace murmel
