#include "Platform/Linux/Portal/PortalShortcuts.h"

#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"

#include <array>
#include <string_view>
#include <utility>

namespace murmel {

namespace {

constexpr const char* shortcutName = "dictate";
constexpr const char* description = "Hold to dictate";

BusObject globalShortcuts() {
  return Portal::interface("GlobalShortcuts");
}

}  // namespace

/// From the request to have the shortcut watched to the end of that.
class PortalShortcuts::Session final : public InstalledShortcut {
 public:
  Session(PortalShortcuts& owner, std::string trigger, Handler handler)
      : owner_(owner),
        portal_(owner.portal_),
        trigger_(std::move(trigger)),
        handler_(std::move(handler)),
        session_(portal_.session()) {
    auto& bus = portal_.bus();
    owned_ = bus.onOwner(Portal::service, [this](bool isThere) {
      if (!isThere) end(ShortcutTrial::Event::lost);
    });
    closed_ = portal_.onEnd(session_, [this] { end(ShortcutTrial::Event::lost); });
    const auto request = portal_.request();
    auto call = bus.newCall(globalShortcuts(), "CreateSession");
    // Some portals of KDE bind here what others bind by the next call.
    isOpen_ = call &&
              sd_bus_message_append(call.get(), "a{sv}", 3, "handle_token", "s", request.name.c_str(),
                                    "session_handle_token", "s", session_.name.c_str(), "shortcuts",
                                    "a(sa{sv})", 1, shortcutName, 2, "description", "s", description,
                                    "preferred_trigger", "s", trigger_.c_str()) >= 0 &&
              send(std::move(call), request, [this] { bind(); });
  }
  ~Session() override {
    if (isOpen_) portal_.bus().tell(Portal::sessionObject(session_), "Close");
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  bool enable() override { return isOpen_; }

 private:
  /// Sends what is answered by a signal. Whoever has answered may destroy this.
  bool send(BusMessage call, const Portal::Token& request, const std::function<void()>& granted) {
    answered_ =
        portal_.onAnswer(request, [this, granted](std::uint32_t refusal, sd_bus_message* /*results*/) {
          if (refusal != 0) return end(ShortcutTrial::Event::refused);
          const auto next = granted;
          next();
        });
    return portal_.bus().send(std::move(call)) != nullptr;
  }

  void bind() {
    auto& bus = portal_.bus();
    for (const auto& [member, activity] :
         {std::pair{"Activated", ShortcutActivity::pressed}, {"Deactivated", ShortcutActivity::released}}) {
      auto& heard = activity == ShortcutActivity::pressed ? pressed_ : released_;
      heard = bus.onSignal(globalShortcuts(), member, [this, activity = activity](sd_bus_message* signal) {
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
        owner.progress_.emit(ShortcutTrial::Event::heard);
      });
    }
    const auto request = portal_.request();
    auto call = bus.newCall(globalShortcuts(), "BindShortcuts");
    const bool isSent =
        call &&
        sd_bus_message_append(call.get(), "oa(sa{sv})sa{sv}", session_.object.c_str(), 1, shortcutName, 2,
                              "description", "s", description, "preferred_trigger", "s", trigger_.c_str(), "",
                              1, "handle_token", "s", request.name.c_str()) >= 0 &&
        send(std::move(call), request, [this] { owner_.progress_.emit(ShortcutTrial::Event::bound); });
    if (!isSent) end(ShortcutTrial::Event::refused);
  }

  void end(ShortcutTrial::Event reason) {
    if (!std::exchange(isOpen_, false)) return;
    // A portal that is still there keeps a session until it is told, whatever it has refused.
    if (reason == ShortcutTrial::Event::refused) portal_.bus().tell(Portal::sessionObject(session_), "Close");
    auto& owner = owner_;
    const auto told = handler_;
    told(ShortcutActivity::lost);
    owner.progress_.emit(reason);
  }

  PortalShortcuts& owner_;
  Portal& portal_;
  std::string trigger_;
  Handler handler_;
  Portal::Token session_;
  bool isOpen_ = false;
  bool isHeld_ = false;
  Registration owned_;
  Registration closed_;
  Registration answered_;
  Registration pressed_;
  Registration released_;
};

PortalShortcuts::PortalShortcuts(Portal& portal, const UsersKeymap& keymap)
    : portal_(portal), keymap_(keymap) {}

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
  if (!triggerOf(shortcut).empty()) return {true, {}};
  return {false, "This desktop cannot hear this key. Choose another one, F10 or Ctrl+Space for instance."};
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
