#include "Platform/Fake/FakeKeyEventTap.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"
#include "Platform/Linux/X11Keys/X11KeyEventTap.h"
#include "Shortcut/HotkeyService.h"
#include "Shortcut/ShortcutChoice.h"
#include "Support/ChildProgram.h"
#include "Support/Testing.h"
#include "Support/XTestKeyboard.h"

#include <poll.h>

#define explicit explicit_  // a field of the header
#include <xcb/xkb.h>
#undef explicit

using Kind = ShortcutConfiguration::Kind;

namespace {

constexpr std::uint32_t markerKey = KEY_F12;

/// A program whose output is read until it has said something. It is asked to end with this object.
class ForeignProcess : public ChildProgram {
 public:
  using ChildProgram::ChildProgram;
  ~ForeignProcess() { end(SIGTERM); }

  /// Reads on until the output holds `text`, for ten seconds at most. What was read before counts too.
  bool waitForOutput(const std::string& text) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (outputSoFar_.find(text) == std::string::npos) {
      const auto left =
          std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
      pollfd ready{output(), POLLIN, 0};
      if (left.count() <= 0 || ::poll(&ready, 1, static_cast<int>(left.count())) <= 0) return false;
      std::array<char, 4'096> buffer{};
      const auto count = ::read(output(), buffer.data(), buffer.size());
      if (count <= 0) return false;
      outputSoFar_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return true;
  }
  [[nodiscard]] const std::string& outputSoFar() const { return outputSoFar_; }
  void forgetOutput() { outputSoFar_.clear(); }

 private:
  std::string outputSoFar_;
};

/// Counts a key that no shortcut has, to see that everything before it has come through.
class MarkedTap final : public KeyEventTap {
 public:
  explicit MarkedTap(KeyEventTap& inner) : inner_(inner) {}
  ListenEventAccess permission() override { return inner_.permission(); }
  std::unique_ptr<InstalledKeyEventTap> create(Handler handler) override {
    auto tap = inner_.create([this, handler = std::move(handler)](const KeyEvent& event) {
      if (event.type == KeyEventType::keyUp && event.keyCode == virtualKeyFromEvdev(markerKey)) ++markers;
      if (event.isRepeat) ++repeats;
      handler(event);
    });
    isInstalled = tap != nullptr;
    return tap;
  }
  int markers = 0;
  int repeats = 0;
  bool isInstalled = false;

 private:
  KeyEventTap& inner_;
};

/// The shortcut on the real server: everything but the coordinator's side.
class Shortcut {
 public:
  explicit Shortcut(X11KeyEnvironment environment = X11KeyEnvironment::fromProcess())
      : x11Taps_(executor, injectedKeys, std::move(environment)) {
    service_.onPress = [this] { calls += "press "; };
    service_.onRelease = [this] { calls += "release "; };
    service_.onToggle = [this] { calls += "toggle "; };
    service_.start([this] { return configuration; });
  }

  /// The calls since the last question, once everything that was typed has come through.
  std::string callsOf(XTestKeyboard& keyboard) {
    const auto before = taps.markers;
    keyboard.press(markerKey);
    keyboard.release(markerKey);
    EXPECT_TRUE(executor.waitUntil([&] { return taps.markers > before; }));
    executor.runUntilIdle();
    auto result = std::exchange(calls, "");
    if (!result.empty()) result.pop_back();
    return result;
  }

  ManualExecutor executor;
  InjectedKeyList injectedKeys{executor};
  ShortcutConfiguration configuration = murmel::configuration(ShortcutChoice::optionKey);
  std::string calls;

 private:
  X11KeyEventTap x11Taps_;

 public:
  MarkedTap taps{x11Taps_};

 private:
  KeyTapShortcutSource source_{taps};
  FakeLocalKeyMonitor localKeys_;
  Signal<> notifications_;
  HotkeyService service_{
      executor, executor, source_, localKeys_, {notifications_, notifications_, notifications_}};
};

bool run(const std::string& command) {
  return std::system(command.c_str()) == 0;  // NOLINT(concurrency-mt-unsafe): one thread
}

class ShortcutEndToEnd : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(run("setxkbmap us"));
    ASSERT_TRUE(giveFocus()) << focused.outputSoFar();
    ASSERT_TRUE(shortcut.taps.isInstalled);
  }
  void TearDown() override { EXPECT_TRUE(run("setxkbmap us")); }

  /// The window manager does so by itself, but not always while it starts.
  bool giveFocus() {
    const std::string label = "Outer window is 0x";
    if (!focused.waitForOutput(label) || !focused.waitForOutput(",")) return false;
    const auto number = focused.outputSoFar().substr(focused.outputSoFar().find(label) + label.size());
    const auto window = static_cast<std::uint32_t>(std::stoul(number, nullptr, 16));
    // It can have the focus as soon as it is mapped.
    const auto accepted = [&] {
      const auto asking = xcb_set_input_focus_checked(keyboard.connection(), XCB_INPUT_FOCUS_PARENT, window,
                                                      XCB_CURRENT_TIME);
      return XObserver::own(xcb_request_check(keyboard.connection(), asking)) == nullptr;
    };
    return shortcut.executor.waitUntil(accepted) && focused.waitForOutput("FocusIn event");
  }

  void tap(std::uint32_t evdevCode) {
    keyboard.press(evdevCode);
    keyboard.release(evdevCode);
  }
  std::string callsOfTapping(std::uint32_t evdevCode) {
    tap(evdevCode);
    return shortcut.callsOf(keyboard);
  }
  void pressCombination() {
    keyboard.press(KEY_LEFTMETA);
    keyboard.press(KEY_LEFTSHIFT);
    keyboard.press(KEY_D);
  }
  void releaseCombination() {
    keyboard.release(KEY_LEFTMETA);
    keyboard.release(KEY_LEFTSHIFT);
    keyboard.release(KEY_D);
  }

  // By line: xev would keep its first one back until there is an event.
  ForeignProcess focused{{"stdbuf", "-oL", "xev", "-event", "keyboard", "-event", "focus"}};
  XTestKeyboard keyboard;
  Shortcut shortcut;
};

}  // namespace

TEST_F(ShortcutEndToEnd, WorksOnEveryLayoutAndWithCapsLockOn) {
  struct Layout {
    std::string command;
    bool rightAltIsOption;
  };
  const std::vector<Layout> layouts{
      {"setxkbmap us", true}, {"setxkbmap de", false}, {"setxkbmap ru", true}, {"setxkbmap us dvorak", true}};
  for (const auto& layout : layouts) {
    SCOPED_TRACE(layout.command);
    ASSERT_TRUE(run(layout.command));
    for (const bool capsLockIsOn : {false, true}) {
      SCOPED_TRACE(capsLockIsOn);
      if (capsLockIsOn) tap(KEY_CAPSLOCK);
      shortcut.configuration = configuration(ShortcutChoice::optionKey);
      EXPECT_EQ(callsOfTapping(KEY_LEFTALT), "press release");
      EXPECT_EQ(callsOfTapping(KEY_RIGHTALT), layout.rightAltIsOption ? "press release" : "");
      EXPECT_EQ(callsOfTapping(KEY_LEFTCTRL), "");

      shortcut.configuration = configuration(ShortcutChoice::commandShiftD);
      pressCombination();
      EXPECT_EQ(shortcut.callsOf(keyboard), "press");
      releaseCombination();
      EXPECT_EQ(shortcut.callsOf(keyboard), "release");

      shortcut.configuration = configuration(ShortcutChoice::doubleTapOption);
      tap(KEY_LEFTALT);
      tap(KEY_LEFTALT);
      EXPECT_EQ(shortcut.callsOf(keyboard), "toggle");
      tap(KEY_LEFTALT);
      tap(KEY_V);
      tap(KEY_LEFTALT);
      EXPECT_EQ(shortcut.callsOf(keyboard), "");
      if (capsLockIsOn) tap(KEY_CAPSLOCK);
    }
  }
}

TEST_F(ShortcutEndToEnd, CapsLockTogglesWhenItGoesOnAndWhenItGoesOff) {
  shortcut.configuration = configuration(ShortcutChoice::capsLock);
  for (int time = 0; time < 4; ++time) {
    EXPECT_EQ(callsOfTapping(KEY_CAPSLOCK), "toggle");
    shortcut.executor.advance(200ms);
  }
}

TEST_F(ShortcutEndToEnd, HearsTheModifiersThatOtherProgramsSee) {
  // Sticky keys and keyboards on the screen hold modifiers down without a key.
  const auto latch = [&](std::uint8_t latched, std::uint8_t locked) {
    const std::uint8_t all = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_4;
    xcb_xkb_use_extension(keyboard.connection(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    xcb_xkb_latch_lock_state(keyboard.connection(), XCB_XKB_ID_USE_CORE_KBD, all, locked, 0, 0, latched, 0,
                             0);
    keyboard.settle();
  };
  shortcut.configuration = {Kind::modifiersOnly, virtualKey::leftControl,
                            keyModifier::control | keyModifier::command, ""};
  latch(0, XCB_MOD_MASK_CONTROL);
  EXPECT_EQ(shortcut.callsOf(keyboard), "");
  keyboard.press(KEY_LEFTMETA);
  keyboard.release(KEY_LEFTMETA);
  EXPECT_EQ(shortcut.callsOf(keyboard), "press release");
  latch(0, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_4);
  EXPECT_EQ(shortcut.callsOf(keyboard), "press");
  latch(0, 0);
  EXPECT_EQ(shortcut.callsOf(keyboard), "release");
  shortcut.configuration = murmel::configuration(ShortcutChoice::controlSpace);
  latch(0, XCB_MOD_MASK_CONTROL);
  keyboard.press(KEY_SPACE);
  keyboard.release(KEY_SPACE);
  EXPECT_EQ(shortcut.callsOf(keyboard), "press release");
  latch(0, 0);
}

TEST_F(ShortcutEndToEnd, TheApplicationInFrontStillGetsEveryKey) {
  shortcut.configuration = configuration(ShortcutChoice::commandShiftD);
  focused.forgetOutput();
  pressCombination();
  releaseCombination();
  EXPECT_EQ(shortcut.callsOf(keyboard), "press release");
  EXPECT_TRUE(focused.waitForOutput("keycode 40 (keysym 0x44, D)"));
}

TEST_F(ShortcutEndToEnd, TheLayoutMayChangeInTheMiddle) {
  keyboard.press(KEY_RIGHTALT);
  EXPECT_EQ(shortcut.callsOf(keyboard), "press");
  ASSERT_TRUE(run("setxkbmap de"));
  EXPECT_EQ(shortcut.callsOf(keyboard), "") << "it is still held, though it would be AltGr now";
  keyboard.release(KEY_RIGHTALT);
  EXPECT_EQ(shortcut.callsOf(keyboard), "release");
  EXPECT_EQ(callsOfTapping(KEY_RIGHTALT), "");
  ASSERT_TRUE(run("setxkbmap us -option ctrl:nocaps"));
  shortcut.configuration = configuration(ShortcutChoice::controlKey);
  EXPECT_EQ(callsOfTapping(KEY_CAPSLOCK), "press release");
  ASSERT_TRUE(run("setxkbmap us -option"));
}

TEST_F(ShortcutEndToEnd, WorksDuringTheGrabsOfOthers) {
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(keyboard.connection())).data->root;
  const auto asking = xcb_grab_keyboard(keyboard.connection(), 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                        XCB_GRAB_MODE_ASYNC);
  const auto grab = XObserver::own(xcb_grab_keyboard_reply(keyboard.connection(), asking, nullptr));
  ASSERT_TRUE(grab && grab->status == XCB_GRAB_STATUS_SUCCESS);
  EXPECT_EQ(callsOfTapping(KEY_LEFTALT), "press release");
  xcb_ungrab_keyboard(keyboard.connection(), XCB_CURRENT_TIME);

  shortcut.configuration = configuration(ShortcutChoice::controlSpace);
  xcb_grab_key(keyboard.connection(), 0, root, XCB_MOD_MASK_CONTROL, KEY_SPACE + xKeyCodeOffset,
               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  keyboard.press(KEY_LEFTCTRL);
  tap(KEY_SPACE);
  keyboard.release(KEY_LEFTCTRL);
  EXPECT_EQ(shortcut.callsOf(keyboard), "press release") << "a combination that the window manager has taken";
}

TEST_F(ShortcutEndToEnd, LosesNoneOfAThousandQuickPresses) {
  constexpr int presses = 1'000;
  for (const auto choice : {ShortcutChoice::optionKey, ShortcutChoice::controlSpace}) {
    shortcut.configuration = configuration(choice);
    const auto key = choice == ShortcutChoice::optionKey ? KEY_LEFTALT : KEY_SPACE;
    if (choice == ShortcutChoice::controlSpace) keyboard.press(KEY_LEFTCTRL);
    for (int press = 0; press < presses; ++press) {
      keyboard.send(key, XCB_KEY_PRESS);
      keyboard.send(key, XCB_KEY_RELEASE);
    }
    keyboard.settle();
    if (choice == ShortcutChoice::controlSpace) keyboard.release(KEY_LEFTCTRL);
    std::string expected;
    for (int press = 0; press < presses; ++press) expected += press == 0 ? "press release" : " press release";
    EXPECT_EQ(shortcut.callsOf(keyboard), expected) << id(choice);
  }
}

TEST_F(ShortcutEndToEnd, ToleratesWhatOtherToolsInject) {
  ASSERT_TRUE(run("xdotool key Alt_R key --delay 0 Alt_L key a keyup Alt_L keyup space"));
  const auto calls = shortcut.callsOf(keyboard);
  EXPECT_TRUE(calls.starts_with("press release")) << calls;
  EXPECT_TRUE(calls.ends_with("release")) << "nothing sticks: " << calls;
  EXPECT_EQ(callsOfTapping(KEY_LEFTALT), "press release");
}

TEST_F(ShortcutEndToEnd, AServerThatDiesIsWaitedForAndFoundAgain) {
  const std::string number = ":" + std::to_string(5'000 + ::getpid() % 20'000);
  const std::vector<std::string> command{"Xvfb", number, "-nolisten", "tcp", "-noreset", "-displayfd", "1"};
  auto server = std::make_unique<ForeignProcess>(command);
  ASSERT_TRUE(server->waitForOutput("\n"));
  Shortcut other({number, "", "x11"});
  ASSERT_TRUE(other.taps.isInstalled);

  server->end(SIGKILL);
  ASSERT_TRUE(other.executor.waitUntil([&] { return other.executor.pendingTimers() == 1; })) << "the retry";
  EXPECT_FALSE(X11KeyEventTap(other.executor, other.injectedKeys, {number, "", "x11"}).permission().granted);
  other.executor.advance(3s);
  EXPECT_FALSE(other.taps.isInstalled);

  server = std::make_unique<ForeignProcess>(command);
  ASSERT_TRUE(server->waitForOutput("\n"));
  other.executor.advance(500ms);
  ASSERT_TRUE(other.taps.isInstalled);
  ASSERT_TRUE(run("DISPLAY=" + number + " xdotool key 64 keydown 96 keyup 96"));
  EXPECT_TRUE(other.executor.waitUntil([&] { return other.calls == "press release "; })) << other.calls;
}

/// A server inside a window of the session's: for it, the session's keyboard is hardware.
class ShortcutOnHardware : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server.waitForOutput("\n"));
    display = ":" + server.outputSoFar().substr(0, server.outputSoFar().find('\n'));
    // Windows of earlier tests may go while the search looks at them; it fails then.
    ASSERT_TRUE(
        run("for try in 1 2 3 4 5 6 7 8 9; do xdotool search --sync --onlyvisible --name Xephyr "
            "windowfocus --sync 2>/dev/null && exit; done; exit 1"));
    shortcut.emplace(X11KeyEnvironment{display, "", "x11"});
    ASSERT_TRUE(shortcut->taps.isInstalled);
  }
  bool waitForCalls(const std::string& expected) {
    return shortcut->executor.waitUntil([&] { return shortcut->calls == expected; });
  }

  ForeignProcess server{{"Xephyr", "-displayfd", "1", "-screen", "320x240", "-noreset", "-nolisten", "tcp"}};
  std::string display;
  XTestKeyboard fingers;
  std::optional<Shortcut> shortcut;
};

TEST_F(ShortcutOnHardware, AHeldKeyThatRepeatsIsOnePress) {
  shortcut->configuration = configuration(ShortcutChoice::controlSpace);
  ASSERT_TRUE(run("xset r rate 50 100"));
  fingers.press(KEY_LEFTCTRL);
  fingers.press(KEY_SPACE);
  EXPECT_TRUE(shortcut->executor.waitUntil([&] { return shortcut->taps.repeats >= 20; }));
  EXPECT_EQ(shortcut->calls, "press ");
  fingers.release(KEY_SPACE);
  fingers.release(KEY_LEFTCTRL);
  EXPECT_TRUE(waitForCalls("press release "));
  ASSERT_TRUE(run("xset r rate"));
}

TEST_F(ShortcutOnHardware, ALastReleaseIsToldAfterAMoment) {
  shortcut->configuration = configuration(ShortcutChoice::controlSpace);
  fingers.press(KEY_LEFTCTRL);
  fingers.press(KEY_SPACE);
  EXPECT_TRUE(waitForCalls("press "));
  fingers.release(KEY_SPACE);
  ASSERT_TRUE(shortcut->executor.waitUntil([&] { return shortcut->executor.pendingTimers() == 1; }));
  EXPECT_EQ(shortcut->calls, "press ");
  shortcut->executor.advance(10ms);
  EXPECT_TRUE(waitForCalls("press release "));
  fingers.release(KEY_LEFTCTRL);
}

TEST_F(ShortcutOnHardware, APasteInTheMiddleOfAHoldDoesNotEndIt) {
  XTestKeyboard ours(display);
  fingers.press(KEY_LEFTALT);
  ASSERT_TRUE(waitForCalls("press "));
  // Option must be up for the paste, so we let it go on the server; the finger stays on it.
  for (const auto& [key, type] : {std::pair(KEY_LEFTALT, XCB_KEY_RELEASE),
                                  {KEY_LEFTCTRL, XCB_KEY_PRESS},
                                  {KEY_V, XCB_KEY_PRESS},
                                  {KEY_V, XCB_KEY_RELEASE},
                                  {KEY_LEFTCTRL, XCB_KEY_RELEASE}}) {
    shortcut->injectedKeys.expect(static_cast<std::uint32_t>(key) + xKeyCodeOffset, type == XCB_KEY_PRESS);
    ours.send(static_cast<std::uint32_t>(key), static_cast<std::uint8_t>(type));
  }
  ours.settle();
  const auto before = shortcut->taps.markers;
  ours.press(markerKey);
  ours.release(markerKey);
  ASSERT_TRUE(shortcut->executor.waitUntil([&] { return shortcut->taps.markers > before; }));
  EXPECT_EQ(shortcut->calls, "press ");
  fingers.release(KEY_LEFTALT);
  EXPECT_TRUE(waitForCalls("press release "));
}
