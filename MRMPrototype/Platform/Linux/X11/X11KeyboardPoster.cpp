#include "Platform/Linux/X11/X11KeyboardPoster.h"

#include "Foundation/Async/Timers.h"
#include "Platform/Linux/X11/X11SecureInput.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <utility>

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace murmel {

namespace {

constexpr Duration heldPollInterval = std::chrono::milliseconds(10);
constexpr int heldPollCount = 40;  // 400 ms

struct ModifierKeys {
  std::uint16_t mask;
  std::array<xkb_keysym_t, 2> symbols;
};

constexpr ModifierKeys control{XCB_MOD_MASK_CONTROL, {XKB_KEY_Control_L, XKB_KEY_Control_R}};
constexpr ModifierKeys shift{XCB_MOD_MASK_SHIFT, {XKB_KEY_Shift_L, XKB_KEY_Shift_R}};

struct ChordKeys {
  PasteChord chord;
  std::array<const ModifierKeys*, 2> modifiers;  // null: none
  xkb_keysym_t key;
};

constexpr ChordKeys chordKeys[] = {
    {PasteChord::controlV, {&control, nullptr}, XKB_KEY_v},
    {PasteChord::controlShiftV, {&control, &shift}, XKB_KEY_v},
    {PasteChord::shiftInsert, {&shift, nullptr}, XKB_KEY_Insert},
};

/// Nobody else is served while this lives: what is seen still holds when the keys are sent.
class ServerGrab {
 public:
  explicit ServerGrab(xcb_connection_t* connection) : connection_(connection) {
    xcb_grab_server(connection_);
  }
  ~ServerGrab() {
    xcb_ungrab_server(connection_);
    xcb_flush(connection_);
  }
  ServerGrab(const ServerGrab&) = delete;
  ServerGrab& operator=(const ServerGrab&) = delete;

 private:
  xcb_connection_t* connection_;
};

}  // namespace

std::expected<std::unique_ptr<X11KeyboardPoster>, std::string> X11KeyboardPoster::open(
    Executor& executor, InjectedKeys* injectedKeys, const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return std::unexpected(connection.error());
  auto map = X11KeyboardMap::open(**connection);
  if (!map) return std::unexpected(std::string("The X server does not describe its keyboard (XKB)."));
  auto* server = (*connection)->get();
  const auto* test = xcb_get_extension_data(server, &xcb_test_id);
  const bool hasTest = test != nullptr && test->present != 0 &&
                       x11Reply(server, xcb_test_get_version_reply, xcb_test_get_version(server, 2, 2));
  return std::unique_ptr<X11KeyboardPoster>(
      new X11KeyboardPoster(executor, injectedKeys, *std::move(connection), std::move(map), hasTest));
}

X11KeyboardPoster::X11KeyboardPoster(Executor& executor, InjectedKeys* injectedKeys,
                                     std::unique_ptr<X11Connection> connection,
                                     std::unique_ptr<X11KeyboardMap> map, bool hasTestExtension)
    : executor_(executor),
      injectedKeys_(injectedKeys),
      connection_(std::move(connection)),
      map_(std::move(map)),
      hasTestExtension_(hasTestExtension),
      hiddenWindow_(connection_->createHiddenWindow(XCB_EVENT_MASK_NO_EVENT)) {}

bool X11KeyboardPoster::mayPost() {
  return hasTestExtension_ && !connection_->hasFailed();
}

std::optional<X11KeyboardPoster::Chord> X11KeyboardPoster::keysOf(PasteChord chord) {
  const auto keys = std::ranges::find(chordKeys, chord, &ChordKeys::chord);
  Chord found;
  for (const auto* modifier : keys->modifiers) {
    if (modifier == nullptr) continue;
    auto& wanted = found.modifiers.emplace_back(Modifier{modifier->mask, {}});
    for (const auto symbol : modifier->symbols) {
      if (const auto code = map_->keyFor(symbol)) wanted.keys.push_back(code->code);
    }
    if (wanted.keys.empty()) return std::nullopt;
  }
  const auto code = map_->keyFor(keys->key);
  if (!code) return std::nullopt;
  found.key = *code;
  return found;
}

bool X11KeyboardPoster::canPost(PasteChord chord) {
  return keysOf(chord).has_value();
}

Task<void> X11KeyboardPoster::awaitReleasedModifiers() {
  for (int poll = 0; poll < heldPollCount && !map_->heldModifiers().empty(); ++poll) {
    auto waiting = sleepFor(executor_, heldPollInterval);
    co_await waiting;
  }
}

/// Whether `window` is the target's or inside it: toolkits give the focus to inner windows, and embedded
/// parts to windows of another process. Some keep a window of their own for the focus beside the one that is
/// shown: then the active window decides.
bool X11KeyboardPoster::isWithin(xcb_window_t window, const RunningApplication& target) {
  constexpr int deepestNesting = 32;
  bool isOfTheProgram = false;
  for (int level = 0; level < deepestNesting && window != XCB_NONE && window != connection_->root();
       ++level) {
    if (target.window != XCB_NONE && window == target.window) return true;
    isOfTheProgram = isOfTheProgram || isSameProgram(connection_->clientOf(window), target.client);
    const auto tree =
        x11Reply(connection_->get(), xcb_query_tree_reply, xcb_query_tree(connection_->get(), window));
    window = tree ? tree->parent : static_cast<xcb_window_t>(XCB_NONE);
  }
  if (!isOfTheProgram || target.window == XCB_NONE) return isOfTheProgram;
  const auto active = connection_->propertyWords(connection_->root(), "_NET_ACTIVE_WINDOW");
  return !active.empty() && active.front() == target.window;
}

bool X11KeyboardPoster::hasKeyboard(const RunningApplication& target) {
  if (isKeyboardGrabbed(*connection_, hiddenWindow_)) return false;
  const auto focus =
      x11Reply(connection_->get(), xcb_get_input_focus_reply, xcb_get_input_focus(connection_->get()));
  if (!focus) return false;
  if (focus->focus != XCB_INPUT_FOCUS_POINTER_ROOT && focus->focus != connection_->root())
    return isWithin(focus->focus, target);
  // Desktops without a fixed focus send keys to the window under the pointer.
  auto window = connection_->root();
  while (true) {
    const auto pointer =
        x11Reply(connection_->get(), xcb_query_pointer_reply, xcb_query_pointer(connection_->get(), window));
    if (!pointer || pointer->child == XCB_NONE) return isWithin(window, target);
    window = pointer->child;
  }
}

void X11KeyboardPoster::send(xcb_keycode_t key, bool goesDown) {
  if (injectedKeys_ != nullptr) injectedKeys_->expect(key, goesDown);
  const std::uint8_t kind = goesDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
  xcb_test_fake_input(connection_->get(), kind, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void X11KeyboardPoster::pressNeutralKey() {
  const auto neutral = map_->keyWithoutSymbol();
  if (!neutral) return;
  send(*neutral, true);
  send(*neutral, false);
}

void X11KeyboardPoster::maskHeldModifiers() {
  if (!mayPost() || map_->heldModifiers().empty()) return;
  pressNeutralKey();
  xcb_flush(connection_->get());
}

std::vector<xcb_keycode_t> X11KeyboardPoster::makeWayFor(const Chord& chord) {
  auto held = map_->heldModifiers();
  std::vector<xcb_keycode_t> pressed;
  for (const auto& modifier : chord.modifiers) {
    const auto isFree = [&](xcb_keycode_t key) {
      return std::ranges::find(held, key, &X11HeldModifier::code) == held.end();
    };
    const auto key = std::ranges::find_if(modifier.keys, isFree);
    pressed.push_back(key != modifier.keys.end() ? *key : modifier.keys.front());
    // What the user holds may stay down with that key of the other side. Its own key belongs to the next
    // shortcut, perhaps: without the modifier a program would be given the rest of that, a space, say.
    if (key != modifier.keys.end())
      std::erase_if(held, [&](const X11HeldModifier& each) { return each.modifiers == modifier.mask; });
  }
  // Whoever still holds another modifier has let go of it as far as the desktop is concerned: pressing it
  // again afterwards leaves it stuck on systems with more than one keyboard.
  if (!held.empty()) pressNeutralKey();
  for (const auto& each : held) send(each.code, false);
  return pressed;
}

PostResult X11KeyboardPoster::post(PasteChord chord, const RunningApplication& target) {
  const auto keys = keysOf(chord);
  if (!keys || !mayPost()) return PostResult::unavailable;
  {
    const ServerGrab grab(connection_->get());
    if (!hasKeyboard(target)) return PostResult::targetNotInFront;
    const auto modifiers = makeWayFor(*keys);
    for (const auto modifier : modifiers) send(modifier, true);
    // Some applications do not look for the letters of a shortcut in the layouts that are not active.
    const auto layout =
        keys->key.otherGroup ? map_->exchangeGroup(*keys->key.otherGroup) : std::optional<std::uint8_t>();
    send(keys->key.code, true);
    send(keys->key.code, false);
    if (layout) map_->exchangeGroup(*layout);
    for (const auto modifier : std::views::reverse(modifiers)) send(modifier, false);
  }
  // The keys have been delivered when the server answers.
  const auto answered =
      x11Reply(connection_->get(), xcb_get_input_focus_reply, xcb_get_input_focus(connection_->get()));
  return answered ? PostResult::posted : PostResult::unavailable;
}

}  // namespace murmel
