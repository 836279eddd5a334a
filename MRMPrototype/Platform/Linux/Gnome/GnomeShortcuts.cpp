#include "Platform/Linux/Gnome/GnomeShortcuts.h"

#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Gnome/GnomeKeyBinding.h"
#include "Platform/Linux/Gnome/ShellExtension.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace murmel {

namespace {

constexpr std::uint64_t boundModifiers =
    keyModifier::shift | keyModifier::control | keyModifier::option | keyModifier::command;

std::string namesOf(std::uint64_t modifiers) {
  std::string names;
  for (const auto& [flag, name] : {std::pair{keyModifier::shift, "<Shift>"},
                                   {keyModifier::control, "<Control>"},
                                   {keyModifier::option, "<Alt>"},
                                   {keyModifier::command, "<Super>"}}) {
    if ((modifiers & flag) != 0) names += name;
  }
  return names;
}

/// As GNOME writes it; by what the key writes.
std::optional<std::string> acceleratorOf(const ShortcutRequest& shortcut, const UsersKeymap& keymap) {
  const auto key = evdevFromVirtualKey(shortcut.keyCode);
  const auto symbol = key ? keymap.symbolOf(*key) : std::nullopt;
  std::array<char, 64> name{};
  if (!symbol || xkb_keysym_get_name(*symbol, name.data(), name.size()) <= 0) return std::nullopt;
  return namesOf(shortcut.modifiers) + name.data();
}

/// A key that the extension has bound, from here to the end of this.
class Bound {
 public:
  Bound(SessionBus& bus, const char* name, const std::string& accelerator,
        std::function<void(bool goesDown)> handler)
      : bus_(bus), name_(name), handler_(std::move(handler)) {
    presses_ =
        bus.onSignal(shellExtension, "Pressed", [this](sd_bus_message* signal) { heard(signal, true); });
    releases_ =
        bus.onSignal(shellExtension, "Released", [this](sd_bus_message* signal) { heard(signal, false); });
    const auto answer = bus.call(shellExtension, "Bind", "ss", name, accelerator.c_str());
    int isBound = 0;
    isBound_ = answer && sd_bus_message_read(answer.get(), "b", &isBound) >= 0 && isBound != 0;
  }
  ~Bound() { bus_.tell(shellExtension, "Unbind", "s", name_); }
  Bound(const Bound&) = delete;
  Bound& operator=(const Bound&) = delete;

  [[nodiscard]] bool isBound() const { return isBound_; }

 private:
  void heard(sd_bus_message* signal, bool goesDown) {
    const char* name = nullptr;
    if (sd_bus_message_read(signal, "s", &name) < 0 || std::string_view(name) != name_) return;
    const auto handler = handler_;
    handler(goesDown);
  }

  SessionBus& bus_;
  const char* name_;
  std::function<void(bool)> handler_;
  bool isBound_ = false;
  Registration presses_;
  Registration releases_;
};

class ExtensionShortcut final : public InstalledShortcut {
 public:
  ExtensionShortcut(SessionBus& bus, const std::string& accelerator, bool isHeld,
                    ShortcutSource::Handler handler)
      : handler_(std::move(handler)),
        bound_(bus, "dictate", accelerator,
               [this, isHeld](bool goesDown) {
                 const auto told = handler_;
                 // Of a key without modifiers no release is told.
                 told(!isHeld    ? ShortcutActivity::toggled
                      : goesDown ? ShortcutActivity::pressed
                                 : ShortcutActivity::released);
               }),
        owner_(bus.onOwner(shellExtension.service, [this](bool isThere) {
          if (isThere) return;
          isLost_ = true;
          const auto told = handler_;
          told(ShortcutActivity::lost);
        })) {}

  bool enable() override { return bound_.isBound() && !isLost_; }

 private:
  ShortcutSource::Handler handler_;
  bool isLost_ = false;
  Bound bound_;
  Registration owner_;
};

class SettingsShortcut final : public InstalledShortcut {
 public:
  SettingsShortcut(SessionBus& bus, const std::string& accelerator) : bus_(bus), binding_(accelerator) {}
  /// Makes room for the extension, which was away while the screen was locked, for instance.
  bool enable() override { return binding_.isSet() && bus_.ownerOf(shellExtension.service).empty(); }

 private:
  SessionBus& bus_;
  GnomeKeyBinding binding_;
};

/// Its end frees the place for the next.
struct Counted final : InstalledShortcut {
  bool enable() override { return shortcut->enable(); }
  std::shared_ptr<InstalledShortcut> shortcut;
};

}  // namespace

GnomeShortcuts::GnomeShortcuts(SessionBus& bus, const UsersKeymap& keymap)
    : bus_(bus),
      keymap_(keymap),
      owner_(bus.onOwner(shellExtension.service, [this](bool /*isThere*/) { permissionDidChange_.emit(); })) {
}

bool GnomeShortcuts::hasExtension() {
  return !bus_.ownerOf(shellExtension.service).empty();
}

ListenEventAccess GnomeShortcuts::permission(const ShortcutRequest& shortcut) {
  if (shortcut.kind != ShortcutRequest::Kind::key) {
    return {false,
            "GNOME tells nobody when a modifier key alone is let go of. Choose a key with modifiers, "
            "Ctrl+Space for instance."};
  }
  if ((shortcut.modifiers & keyModifier::function) != 0 || !acceleratorOf(shortcut, keymap_))
    return {false, "GNOME cannot hear this key. Choose another one, F10 or Ctrl+Space for instance."};
  if (!hasExtension() && !GnomeKeyBinding::isSupported()) {
    return {
        false,
        "GNOME's settings daemon, which listens for shortcuts, is not installed. Enable Murmel's extension "
        "instead."};
  }
  return {true, {}};
}

bool GnomeShortcuts::tellsOfRelease(const ShortcutRequest& shortcut) {
  return hasExtension() && (shortcut.modifiers & boundModifiers) != 0;
}

std::unique_ptr<InstalledShortcut> GnomeShortcuts::install(const ShortcutRequest& shortcut, Handler handler) {
  if (!permission(shortcut).granted || !installed_.expired()) return nullptr;
  const auto accelerator = *acceleratorOf(shortcut, keymap_);
  auto counted = std::make_unique<Counted>();
  if (hasExtension()) {
    counted->shortcut =
        std::make_shared<ExtensionShortcut>(bus_, accelerator, tellsOfRelease(shortcut), std::move(handler));
  } else {
    counted->shortcut = std::make_shared<SettingsShortcut>(bus_, accelerator);
  }
  if (!counted->enable()) return nullptr;
  installed_ = counted->shortcut;
  return counted;
}

Registration GnomeCancelKey::take(std::function<void()> pressed) {
  auto bound = std::make_unique<Bound>(bus_, "cancel", "Escape", [pressed](bool goesDown) {
    if (goesDown) pressed();
  });
  if (!bound->isBound()) return {};
  return Registration([bound = std::move(bound)]() mutable { bound.reset(); });
}

}  // namespace murmel
