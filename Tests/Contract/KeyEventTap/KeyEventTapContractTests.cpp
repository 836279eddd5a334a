#include "Platform/Fake/FakeKeyEventTap.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"
#include "Platform/Linux/X11Keys/X11KeyEventTap.h"
#include "Support/KeyboardKeys.h"
#include "Support/Testing.h"
#include "Support/XTestKeyboard.h"

namespace {

constexpr Key space{KEY_SPACE, virtualKey::space, 0};

/// A fake tap, with a keyboard that counts its modifiers as a real one does.
class FakeDesktop {
 public:
  ManualExecutor executor;
  FakeKeyEventTap taps;

  void press(const Key& key) { move(key, true); }
  void release(const Key& key) { move(key, false); }
  void breakTheTap() {
    executor.post([this] { taps.disable(KeyEventType::tapDisabledByTimeout, /*forGood=*/true); });
  }
  KeyEventTap& withoutPermission() {
    taps.setPermission(false);
    return taps;
  }

 private:
  void move(const Key& key, bool goesDown) {
    executor.post([this, event = keyboard_.moved(key, goesDown)] {
      if (taps.isInstalled()) taps.deliver(event);
    });
  }
  CountingKeyboard keyboard_;
};

class X11Desktop {
 public:
  ~X11Desktop() {
    for (const auto key : std::set(held_)) keyboard_.release(key);
  }

  ManualExecutor executor;
  InjectedKeyList injectedKeys{executor};
  X11KeyEventTap taps{executor, injectedKeys, X11KeyEnvironment::fromProcess()};

  void press(const Key& key) {
    held_.insert(key.evdevCode);
    keyboard_.press(key.evdevCode);
  }
  void release(const Key& key) {
    held_.erase(key.evdevCode);
    keyboard_.release(key.evdevCode);
  }
  void breakTheTap() { keyboard_.hangUpOtherConnections(); }
  KeyEventTap& withoutPermission() { return waylandTaps_; }

 private:
  test::XTestKeyboard keyboard_;
  std::set<std::uint32_t> held_;
  X11KeyEventTap waylandTaps_{executor, injectedKeys, {":0", "wayland-0", "wayland"}};
};

template <class Desktop>
class KeyEventTapContract : public ::testing::Test {
 protected:
  bool install() {
    tap = desktop.taps.create([this](const KeyEvent& event) { events.push_back(event); });
    return tap != nullptr;
  }
  bool waitForEvents(std::size_t count) {
    return desktop.executor.waitUntil([&] { return events.size() >= count; });
  }
  /// Everything that happened before has been told, or never will be: another key comes through after it.
  void settle() {
    desktop.executor.runUntilIdle();
    const auto before = events.size();
    desktop.press(space);
    desktop.release(space);
    ASSERT_TRUE(desktop.executor.waitUntil(
        [&] { return events.size() >= before + 2 && events.back().type == KeyEventType::keyUp; }));
    events.resize(events.size() - 2);
  }
  void expectEvent(std::size_t index, KeyEventType type, const Key& key, std::uint64_t flags) {
    ASSERT_LT(index, events.size());
    EXPECT_EQ(events[index].type, type) << index;
    EXPECT_EQ(events[index].keyCode, key.keyCode) << index;
    EXPECT_EQ(events[index].flags, flags) << index;
    EXPECT_FALSE(events[index].isRepeat) << index;
  }

  Desktop desktop;
  std::vector<KeyEvent> events;
  std::unique_ptr<InstalledKeyEventTap> tap;
};

using Desktops = ::testing::Types<FakeDesktop, X11Desktop>;
TYPED_TEST_SUITE(KeyEventTapContract, Desktops);

}  // namespace

TYPED_TEST(KeyEventTapContract, TellsKeysInOrderWithTheModifiersThatAreDown) {
  const auto permission = this->desktop.taps.permission();
  EXPECT_TRUE(permission.granted) << permission.reason;
  EXPECT_TRUE(permission.reason.empty());
  ASSERT_TRUE(this->install());
  this->desktop.press(optionKey);
  this->desktop.press(space);
  this->desktop.press(shiftKey);
  this->desktop.release(optionKey);
  this->desktop.release(space);
  this->desktop.release(shiftKey);
  EXPECT_TRUE(this->events.empty()) << "told from the event loop only";
  ASSERT_TRUE(this->waitForEvents(6));
  this->expectEvent(0, KeyEventType::flagsChanged, optionKey, keyModifier::option);
  this->expectEvent(1, KeyEventType::keyDown, space, keyModifier::option);
  this->expectEvent(2, KeyEventType::flagsChanged, shiftKey, keyModifier::option | keyModifier::shift);
  this->expectEvent(3, KeyEventType::flagsChanged, optionKey, keyModifier::shift);
  this->expectEvent(4, KeyEventType::keyUp, space, keyModifier::shift);
  this->expectEvent(5, KeyEventType::flagsChanged, shiftKey, 0);
}

TYPED_TEST(KeyEventTapContract, KeysHeldBeforeItCameAreNotToldButCount) {
  this->desktop.press(optionKey);
  this->desktop.executor.runUntilIdle();
  ASSERT_TRUE(this->install());
  this->desktop.press(space);
  this->desktop.release(optionKey);
  this->desktop.release(space);
  ASSERT_TRUE(this->waitForEvents(3));
  this->expectEvent(0, KeyEventType::keyDown, space, keyModifier::option);
  this->expectEvent(1, KeyEventType::flagsChanged, optionKey, 0);
  this->expectEvent(2, KeyEventType::keyUp, space, 0);
}

TYPED_TEST(KeyEventTapContract, ThereIsOneTapAtATime) {
  ASSERT_TRUE(this->install());
  EXPECT_EQ(this->desktop.taps.create([](const KeyEvent&) {}), nullptr);
  this->settle();
  EXPECT_TRUE(this->events.empty());
  this->tap.reset();
  ASSERT_TRUE(this->install());
  this->settle();
}

TYPED_TEST(KeyEventTapContract, ARemovedTapIsSilentEvenWhenItsHandlerRemovedIt) {
  this->tap = this->desktop.taps.create([this](const KeyEvent& event) {
    this->events.push_back(event);
    this->tap.reset();
    EXPECT_TRUE(this->install()) << "there is room for another one at once";
    this->tap.reset();
  });
  ASSERT_TRUE(this->tap);
  this->desktop.press(optionKey);
  this->desktop.press(space);
  this->desktop.release(space);
  this->desktop.release(optionKey);
  ASSERT_TRUE(this->waitForEvents(1));
  ASSERT_TRUE(this->install());
  this->settle();
  EXPECT_EQ(this->events.size(), 1U);
}

TYPED_TEST(KeyEventTapContract, ATapThatBreaksSaysSoOnceAndCanBeReplaced) {
  ASSERT_TRUE(this->install());
  EXPECT_TRUE(this->tap->enable()) << "it is enabled already";
  this->settle();
  this->desktop.breakTheTap();
  ASSERT_TRUE(this->waitForEvents(1));
  EXPECT_EQ(this->events[0].type, KeyEventType::tapDisabledByTimeout);
  this->desktop.executor.runUntilIdle();
  EXPECT_EQ(this->events.size(), 1U);
  EXPECT_FALSE(this->tap->enable());
  this->tap.reset();
  this->events.clear();
  ASSERT_TRUE(this->install());
  this->settle();
  EXPECT_TRUE(this->events.empty());
}

TYPED_TEST(KeyEventTapContract, WithoutPermissionThereIsAReasonAndNoTap) {
  auto& taps = this->desktop.withoutPermission();
  EXPECT_FALSE(taps.permission().granted);
  EXPECT_FALSE(taps.permission().reason.empty());
  EXPECT_EQ(taps.create([](const KeyEvent&) {}), nullptr);
}
