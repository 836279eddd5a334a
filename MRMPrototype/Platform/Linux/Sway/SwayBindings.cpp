#include "Platform/Linux/Sway/SwayBindings.h"

#include "Foundation/Json/Json.h"
#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"

#include <optional>
#include <utility>
#include <vector>

#include <linux/input-event-codes.h>
#include <unistd.h>

namespace murmel {

namespace {

/// By the place of the key, whatever the layout writes with it.
std::optional<std::string> bindingKeys(const ShortcutRequest& shortcut) {
  const auto key = evdevFromVirtualKey(shortcut.keyCode);
  if (!key) return std::nullopt;
  std::string keys;
  for (const auto& [flag, name] : {std::pair{keyModifier::shift, "Shift+"},
                                   {keyModifier::control, "Ctrl+"},
                                   {keyModifier::option, "Mod1+"},
                                   {keyModifier::command, "Mod4+"}}) {
    if ((shortcut.modifiers & flag) != 0) keys += name;
  }
  return keys + std::to_string(*key + xKeyCodeOffset);
}

/// One of the commands of a binding that does nothing but be told to us. Another instance has other ones.
std::string word(const char* what) {
  return "nop murmel " + std::to_string(::getpid()) + " " + what;
}

/// Key bindings on a connection of their own, which end with this.
class Bindings {
 public:
  struct Binding {
    std::string options;  ///< "--no-repeat" for instance
    std::string keys;
    std::string command;
  };

  Bindings(Executor& executor, const std::string& path, std::vector<Binding> bindings,
           std::function<void(const std::string& command)> fired, std::function<void()> lost)
      : bindings_(std::move(bindings)),
        fired_(std::move(fired)),
        lost_(std::move(lost)),
        commands_(SwaySocket::open(path)),
        events_(SwaySocket::open(path)) {
    if (!commands_ || !events_ ||
        !events_->ask(SwaySocket::Request::subscribe, R"(["binding","workspace","shutdown"])") || !bind())
      return;
    isBound_ = true;
    watch_ = executor.watchReadable(events_->descriptor(), [this] { handleEvents(); });
  }
  ~Bindings() {
    if (!isBound_ || commands_->hasFailed()) return;
    for (const auto& binding : bindings_) run("unbindcode " + binding.options + " " + binding.keys);
  }
  Bindings(const Bindings&) = delete;
  Bindings& operator=(const Bindings&) = delete;

  [[nodiscard]] bool isBound() const { return isBound_ && !events_->hasFailed(); }

 private:
  bool run(const std::string& command) {
    const auto answer = commands_->ask(SwaySocket::Request::command, command);
    const auto results = parsedJson(answer.value_or(std::string()));
    return results.element(0)["success"].boolean().value_or(false);
  }
  bool bind() {
    for (const auto& binding : bindings_) {
      if (!run("bindcode " + binding.options + " " + binding.keys + " " + binding.command)) return false;
    }
    return true;
  }
  void handleEvents() {
    // Whoever is told may destroy this.
    const std::weak_ptr<int> alive = alive_;
    while (!alive.expired()) {
      const auto message = events_->next();
      if (!message) break;
      const auto event = parsedJson(message->body);
      if (message->type == SwaySocket::workspaceEvent) {
        // With its configuration sway reads its bindings anew.
        if (event["change"] == "reload") bind();
      } else if (message->type == SwaySocket::bindingEvent && event.contains("binding")) {
        const auto fired = fired_;
        fired(event["binding"]["command"].textOrEmpty());
      }
    }
    if (alive.expired() || !events_->hasFailed()) return;
    watch_.reset();
    const auto lost = lost_;
    lost();
  }

  std::vector<Binding> bindings_;
  std::function<void(const std::string&)> fired_;
  std::function<void()> lost_;
  std::unique_ptr<SwaySocket> commands_;
  std::unique_ptr<SwaySocket> events_;
  bool isBound_ = false;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
  Registration watch_;
};

class Shortcut final : public InstalledShortcut {
 public:
  Shortcut(Executor& executor, const std::string& path, const ShortcutRequest& shortcut,
           ShortcutSource::Handler handler)
      : toggles_(shortcut.kind == ShortcutRequest::Kind::capsLock),
        handler_(std::move(handler)),
        bindings_(
            executor, path, bindingsFor(shortcut), [this](const std::string& command) { fired(command); },
            [this] { handler_(ShortcutActivity::lost); }) {}

  bool enable() override { return bindings_.isBound(); }

 private:
  static std::vector<Bindings::Binding> bindingsFor(const ShortcutRequest& shortcut) {
    const auto keys = bindingKeys(shortcut).value_or("");
    std::vector<Bindings::Binding> bindings{{"--no-repeat", keys, word("press")}};
    if (shortcut.kind != ShortcutRequest::Kind::capsLock)
      bindings.push_back({"--release", keys, word("release")});
    return bindings;
  }

  void fired(const std::string& command) {
    const bool isPress = command == word("press");
    if (!isPress && command != word("release")) return;
    if (toggles_) {
      handler_(ShortcutActivity::toggled);
      return;
    }
    const bool wasHeld = std::exchange(isHeld_, isPress && !isHeld_);
    if (isHeld_ != wasHeld) handler_(isHeld_ ? ShortcutActivity::pressed : ShortcutActivity::released);
  }

  bool toggles_;
  bool isHeld_ = false;
  ShortcutSource::Handler handler_;
  Bindings bindings_;
};

}  // namespace

ListenEventAccess SwayBindings::permission(const ShortcutRequest& shortcut) {
  switch (shortcut.kind) {
    case ShortcutRequest::Kind::key:
      if ((shortcut.modifiers & keyModifier::function) != 0 || !bindingKeys(shortcut))
        return {false, "sway cannot hear this key. Choose another one, F10 or Ctrl+Space for instance."};
      return {true, {}};
    case ShortcutRequest::Kind::capsLock:
      return {true, {}};
    case ShortcutRequest::Kind::modifiersOnly:
    case ShortcutRequest::Kind::doubleTapModifier:
      break;
  }
  return {false,
          "sway tells nobody when a modifier key is let go of. Choose a key with modifiers, Ctrl+Space for "
          "instance."};
}

std::unique_ptr<InstalledShortcut> SwayBindings::install(const ShortcutRequest& shortcut, Handler handler) {
  if (!permission(shortcut).granted || !installed_.expired()) return nullptr;
  auto request = shortcut;
  if (request.kind == ShortcutRequest::Kind::capsLock) request.keyCode = virtualKey::capsLock;
  /// Its end frees the place for the next.
  struct Counted final : InstalledShortcut {
    bool enable() override { return shortcut->enable(); }
    std::shared_ptr<Shortcut> shortcut;
  };
  auto counted = std::make_unique<Counted>();
  counted->shortcut = std::make_shared<Shortcut>(executor_, path_, request, std::move(handler));
  if (!counted->enable()) return nullptr;
  installed_ = counted->shortcut;
  return counted;
}

Registration SwayCancelKey::take(std::function<void()> pressed) {
  auto bindings = std::make_unique<Bindings>(
      executor_, path_,
      std::vector<Bindings::Binding>{
          {"--no-repeat", std::to_string(KEY_ESC + xKeyCodeOffset), word("cancel")}},
      [pressed = std::move(pressed)](const std::string& command) {
        if (command == word("cancel")) pressed();
      },
      [] {});
  if (!bindings->isBound()) return {};
  return Registration([bindings = std::move(bindings)]() mutable { bindings.reset(); });
}

}  // namespace murmel
