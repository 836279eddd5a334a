#include "Platform/Linux/KWin/GlobalAccel.h"

#include "Platform/DesktopProbe.h"
#include "Platform/KeyModifiers.h"
#include "Platform/Linux/KWin/QtKeys.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"

#include <string_view>
#include <utility>

namespace murmel {

namespace {

const BusObject daemon{desktopBusName::globalAccel, "/kglobalaccel", "org.kde.KGlobalAccel"};
constexpr const char* component = "app.murmel.Murmel";
constexpr const char* cancelAction = "Throw the recording away";
constexpr const char* dictateAction = "Dictate";

/// Active, and what was stored of an earlier time does not count: the shortcut is chosen in Murmel.
constexpr std::uint32_t presentAndOurs = 0x2 | 0x4;

bool appendAction(sd_bus_message* call, const char* action) {
  return sd_bus_message_append(call, "as", 4, component, action, "Murmel", action) >= 0;
}

/// One action with one key, from here to the end of this.
class Action {
 public:
  Action(SessionBus& bus, const char* action, int key, std::function<void(bool goesDown)> handler)
      : bus_(bus), action_(action), handler_(std::move(handler)) {
    auto call = bus_.newCall(daemon, "doRegister");
    if (!call || !appendAction(call.get(), action_) || !bus_.send(std::move(call))) return;
    const auto path = componentPath();
    if (path.empty()) return;
    const BusObject told{desktopBusName::globalAccel, path, "org.kde.kglobalaccel.Component"};
    presses_ =
        bus_.onSignal(told, "globalShortcutPressed", [this](sd_bus_message* signal) { heard(signal, true); });
    releases_ = bus_.onSignal(told, "globalShortcutReleased",
                              [this](sd_bus_message* signal) { heard(signal, false); });
    isTaken_ = take(key);
  }
  ~Action() {
    // An action that stays would keep its key from everybody.
    bus_.tell(daemon, "unregister", "ss", component, action_);
  }
  Action(const Action&) = delete;
  Action& operator=(const Action&) = delete;

  [[nodiscard]] bool isTaken() const { return isTaken_; }

 private:
  std::string componentPath() {
    const auto answer = bus_.call(daemon, "getComponent", "s", component);
    const char* path = nullptr;
    if (!answer || sd_bus_message_read(answer.get(), "o", &path) < 0) return {};
    return path;
  }
  bool take(int key) {
    auto call = bus_.newCall(daemon, "setShortcut");
    if (!call || !appendAction(call.get(), action_) ||
        sd_bus_message_append(call.get(), "aiu", 1, key, presentAndOurs) < 0)
      return false;
    // What it has now: no key where somebody else has that one.
    const auto answer = bus_.send(std::move(call));
    int taken = 0;
    return answer && sd_bus_message_enter_container(answer.get(), 'a', "i") >= 0 &&
           sd_bus_message_read(answer.get(), "i", &taken) > 0 && taken == key;
  }
  void heard(sd_bus_message* signal, bool goesDown) {
    const char* of = nullptr;
    const char* action = nullptr;
    if (sd_bus_message_read(signal, "ss", &of, &action) < 0 || std::string_view(action) != action_) return;
    // A key that repeats is told of as pressed again.
    if (std::exchange(isDown_, goesDown) == goesDown) return;
    const auto handler = handler_;
    handler(goesDown);
  }

  SessionBus& bus_;
  const char* action_;
  std::function<void(bool)> handler_;
  bool isTaken_ = false;
  bool isDown_ = false;
  Registration presses_;
  Registration releases_;
};

class Shortcut final : public InstalledShortcut {
 public:
  Shortcut(SessionBus& bus, int key, ShortcutSource::Handler handler)
      : bus_(bus),
        handler_(std::move(handler)),
        action_(bus, dictateAction, key,
                [this](bool goesDown) {
                  const auto told = handler_;
                  told(goesDown ? ShortcutActivity::pressed : ShortcutActivity::released);
                }),
        owner_(bus.onOwner(desktopBusName::globalAccel, [this](bool isThere) {
          if (isThere) return;
          isLost_ = true;
          const auto told = handler_;
          told(ShortcutActivity::lost);
        })) {}

  bool enable() override { return action_.isTaken() && !isLost_ && bus_.isOpen(); }

 private:
  SessionBus& bus_;
  ShortcutSource::Handler handler_;
  bool isLost_ = false;
  Action action_;
  Registration owner_;
};

/// Its end frees the place for the next.
struct Counted final : InstalledShortcut {
  bool enable() override { return shortcut->enable(); }
  std::shared_ptr<Shortcut> shortcut;
};

}  // namespace

GlobalAccelShortcuts::GlobalAccelShortcuts(SessionBus& bus, UsersKeymap& keymap)
    : bus_(bus),
      keymap_(keymap),
      keymapChanges_(keymap.didChange().subscribe([this] { permissionDidChange_.emit(); })) {}

std::optional<int> GlobalAccelShortcuts::keyOf(const ShortcutRequest& shortcut) const {
  const auto key = evdevFromVirtualKey(shortcut.keyCode);
  const auto symbol = key ? keymap_.symbolOf(*key) : std::nullopt;
  return symbol ? qtKey(*symbol, shortcut.modifiers) : std::nullopt;
}

ListenEventAccess GlobalAccelShortcuts::permission(const ShortcutRequest& shortcut) {
  if (shortcut.kind != ShortcutRequest::Kind::key) {
    return {
        false,
        "KDE tells nobody when a modifier key alone is let go of. Choose a key with modifiers, Ctrl+Space "
        "for instance."};
  }
  const auto key = keyOf(shortcut);
  if ((shortcut.modifiers & keyModifier::function) != 0 || !key)
    return {false, "KDE cannot hear this key. Choose another one, F10 or Ctrl+Space for instance."};
  // Who has it, named first: another Murmel is we.
  const auto answer = bus_.call(daemon, "action", "i", *key);
  if (!answer || sd_bus_message_enter_container(answer.get(), 'a', "s") < 0)
    return {false, "KDE's service for global shortcuts does not answer."};
  const char* owner = nullptr;
  if (sd_bus_message_read(answer.get(), "s", &owner) > 0 && std::string_view(owner) != component) {
    return {false,
            "KDE or another program has this shortcut. Choose another one, or take it away there in the "
            "system settings."};
  }
  return {true, {}};
}

std::unique_ptr<InstalledShortcut> GlobalAccelShortcuts::install(const ShortcutRequest& shortcut,
                                                                 Handler handler) {
  if (!permission(shortcut).granted || !installed_.expired()) return nullptr;
  auto counted = std::make_unique<Counted>();
  counted->shortcut = std::make_shared<Shortcut>(bus_, *keyOf(shortcut), std::move(handler));
  if (!counted->enable()) return nullptr;
  installed_ = counted->shortcut;
  return counted;
}

GlobalAccelCancelKey::GlobalAccelCancelKey(SessionBus& bus) : bus_(bus) {
  // One that was killed has left the key behind.
  bus_.tell(daemon, "unregister", "ss", component, cancelAction);
}

Registration GlobalAccelCancelKey::take(std::function<void()> pressed) {
  auto action = std::make_unique<Action>(bus_, cancelAction, qtEscape, [pressed](bool goesDown) {
    if (goesDown) pressed();
  });
  if (!action->isTaken()) return {};
  return Registration([action = std::move(action)]() mutable { action.reset(); });
}

}  // namespace murmel
