#include "Platform/Linux/KWin/GlobalAccel.h"

#include "Platform/DesktopProbe.h"
#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <xkbcommon/xkbcommon.h>

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

// Qt's programs, KDE's daemons among them, know a key by a number: what it writes.
constexpr int qtEscape = 0x0100'0000;
constexpr int firstFunctionKey = 0x0100'0030;

constexpr std::pair<xkb_keysym_t, int> namedKeys[] = {
    {XKB_KEY_Escape, qtEscape},    {XKB_KEY_Tab, 0x0100'0001},           {XKB_KEY_BackSpace, 0x0100'0003},
    {XKB_KEY_Return, 0x0100'0004}, {XKB_KEY_Insert, 0x0100'0006},        {XKB_KEY_Delete, 0x0100'0007},
    {XKB_KEY_Pause, 0x0100'0008},  {XKB_KEY_Print, 0x0100'0009},         {XKB_KEY_Home, 0x0100'0010},
    {XKB_KEY_End, 0x0100'0011},    {XKB_KEY_Left, 0x0100'0012},          {XKB_KEY_Up, 0x0100'0013},
    {XKB_KEY_Right, 0x0100'0014},  {XKB_KEY_Down, 0x0100'0015},          {XKB_KEY_Prior, 0x0100'0016},
    {XKB_KEY_Next, 0x0100'0017},   {XKB_KEY_Scroll_Lock, 0x0100'0026},   {XKB_KEY_Menu, 0x0100'0055},
    {XKB_KEY_Help, 0x0100'0058},   {XKB_KEY_XF86AudioPlay, 0x0100'0080},
};

std::optional<int> plainKey(xkb_keysym_t symbol) {
  if (symbol >= XKB_KEY_F1 && symbol <= XKB_KEY_F35)
    return firstFunctionKey + static_cast<int>(symbol - XKB_KEY_F1);
  const auto* named = std::ranges::find(namedKeys, symbol, &std::pair<xkb_keysym_t, int>::first);
  if (named != std::end(namedKeys)) return named->second;
  // The others by the character that they write, as a capital.
  const auto character = xkb_keysym_to_utf32(xkb_keysym_to_upper(symbol));
  constexpr std::uint32_t space = 0x20;
  return character >= space ? std::optional(static_cast<int>(character)) : std::nullopt;
}

/// Nothing for a key that has no number. `modifiers` are bits of `keyModifier`.
std::optional<int> qtKey(xkb_keysym_t symbol, std::uint64_t modifiers) {
  auto key = plainKey(symbol);
  if (!key) return std::nullopt;
  for (const auto& [flag, bit] : {std::pair{keyModifier::shift, 0x0200'0000},
                                  {keyModifier::control, 0x0400'0000},
                                  {keyModifier::option, 0x0800'0000},
                                  {keyModifier::command, 0x1000'0000}}) {
    if ((modifiers & flag) != 0) *key |= bit;
  }
  return key;
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
  const auto key = keyOf(shortcut);
  if (!key || !permission(shortcut).granted || !installed_.expired()) return nullptr;
  auto counted = std::make_unique<Counted>();
  counted->shortcut = std::make_shared<Shortcut>(bus_, *key, std::move(handler));
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
