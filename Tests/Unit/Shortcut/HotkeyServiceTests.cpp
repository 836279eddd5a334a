#include "Platform/Fake/FakeKeyEventTap.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/KeyModifiers.h"
#include "Shortcut/HotkeyService.h"
#include "Shortcut/ShortcutChoice.h"
#include "Support/Testing.h"

namespace {

KeyEvent flagsEvent(VirtualKeyCode key, std::uint64_t modifiers) {
  return {KeyEventType::flagsChanged, modifiers, key, false, ""};
}
const KeyEvent optionDown = flagsEvent(virtualKey::leftOption, keyModifier::option);
const KeyEvent optionUp = flagsEvent(virtualKey::leftOption, 0);

class HotkeyServiceTest : public ::testing::Test {
 protected:
  HotkeyServiceTest() { make(); }

  void make() {
    service.emplace(executor, executor, source, localKeys,
                    HotkeyNotifications{shortcutDidChange, permissionDidChange, didBecomeActive});
    service->onPress = [this] { calls += "press "; };
    service->onRelease = [this] { calls += "release "; };
    service->onToggle = [this] { calls += "toggle "; };
  }
  void start() {
    service->start([this] { return shortcut; });
  }
  void select(ShortcutChoice choice) {
    shortcut = configuration(choice);
    shortcutDidChange.emit();
    executor.runUntilIdle();
  }
  void deliver(const KeyEvent& event) {
    taps.deliver(event);
    executor.runUntilIdle();
  }

  ManualExecutor executor;
  FakeKeyEventTap taps;
  KeyTapShortcutSource source{taps};
  FakeLocalKeyMonitor localKeys;
  Signal<> shortcutDidChange, permissionDidChange, didBecomeActive;
  ShortcutConfiguration shortcut = configuration(ShortcutChoice::optionKey);
  std::string calls;
  std::optional<HotkeyService> service;
};

}  // namespace

TEST_F(HotkeyServiceTest, FurtherShortcutsAreHeardAlsoWithoutTheFirst) {
  ShortcutConfiguration also;
  service->also([&] { return also; }, [this] { calls += "also "; });
  select(ShortcutChoice::disabled);
  start();
  EXPECT_FALSE(taps.isInstalled());
  also = configuration(ShortcutChoice::commandShiftD);
  shortcutDidChange.emit();
  executor.runUntilIdle();
  ASSERT_TRUE(taps.isInstalled());
  deliver({KeyEventType::keyDown, also.modifierRawValue, also.keyCode, false, ""});
  deliver({KeyEventType::keyUp, also.modifierRawValue, also.keyCode, false, ""});
  EXPECT_EQ(calls, "also ");
}

TEST_F(HotkeyServiceTest, TurnsKeysIntoCallsWithTheShortcutOfTheMoment) {
  start();
  deliver(optionDown);
  deliver(optionUp);
  EXPECT_EQ(calls, "press release ");
  shortcut = configuration(ShortcutChoice::doubleTapOption);  // the provider is asked each time
  for (const auto& event : {optionDown, optionUp, optionDown, optionUp}) deliver(event);
  EXPECT_EQ(calls, "press release toggle ");
  shortcut = configuration(ShortcutChoice::capsLock);
  deliver(flagsEvent(virtualKey::capsLock, keyModifier::capsLock));
  executor.advance(119ms);
  deliver(flagsEvent(virtualKey::capsLock, 0));
  executor.advance(1ms);
  deliver(flagsEvent(virtualKey::capsLock, 0));
  EXPECT_EQ(calls, "press release toggle toggle toggle ") << "the time comes from the clock";
}

TEST_F(HotkeyServiceTest, CountsWhatTheUserPressesBesidesTheShortcuts) {
  EXPECT_EQ(service->userInput(), std::nullopt) << "nobody listens";
  const auto chosen = configuration(ShortcutChoice::controlSpace);
  shortcut = chosen;
  start();
  const auto counts = [&](const KeyEvent& event) {
    const auto before = service->userInput();
    deliver(event);
    return service->userInput() != before;
  };
  const auto key = [&](std::uint64_t modifiers, bool isRepeat) {
    return KeyEvent{KeyEventType::keyDown, modifiers, chosen.keyCode, isRepeat, ""};
  };
  EXPECT_FALSE(counts(key(keyModifier::control, false)) || counts(key(keyModifier::control, true)) ||
               counts({KeyEventType::keyUp, 0, chosen.keyCode, false, ""}) || counts(optionDown));
  EXPECT_TRUE(counts(key(0, false))) << "the same key without its modifier writes";
  EXPECT_TRUE(counts({KeyEventType::buttonDown, 0, 0, false, ""}));
  select(ShortcutChoice::disabled);
  EXPECT_EQ(service->userInput(), std::nullopt);
}

TEST_F(HotkeyServiceTest, NeverCallsFromInsideTheTap) {
  start();
  taps.deliver(optionDown);
  EXPECT_EQ(calls, "");
  service->onPress = [this] {
    calls += "press ";
    shortcut = configuration(ShortcutChoice::disabled);
    shortcutDidChange.emit();
  };
  executor.runUntilIdle();
  EXPECT_EQ(calls, "press release ");
  EXPECT_FALSE(taps.isInstalled()) << "a callback may take the tap away";
}

TEST_F(HotkeyServiceTest, TheDisabledShortcutNeedsNoTapAndComesBackWithoutARestart) {
  select(ShortcutChoice::disabled);
  start();
  EXPECT_EQ(taps.creationAttempts(), 0);
  EXPECT_TRUE(localKeys.hasMonitors());
  select(ShortcutChoice::optionKey);
  EXPECT_TRUE(taps.isInstalled());
  select(ShortcutChoice::functionKey);
  EXPECT_EQ(taps.creations(), 1) << "another shortcut keeps the tap";
  select(ShortcutChoice::disabled);
  EXPECT_FALSE(taps.isInstalled());
  select(ShortcutChoice::optionKey);
  deliver(optionDown);
  EXPECT_EQ(calls, "press ");
}

TEST_F(HotkeyServiceTest, WithoutPermissionOnlyOurOwnWindowsAreHeard) {
  taps.setPermission(false);
  start();
  EXPECT_EQ(taps.creationAttempts(), 0);
  EXPECT_EQ(executor.pendingTimers(), 0U) << "a missing permission is not retried";
  localKeys.deliver(optionDown);
  executor.runUntilIdle();
  EXPECT_EQ(calls, "press ");
  taps.setPermission(true);
  permissionDidChange.emit();
  executor.runUntilIdle();
  ASSERT_TRUE(taps.isInstalled());
  deliver(optionUp);
  EXPECT_EQ(calls, "press release ") << "a key may go down before the tap comes and up after it";
}

TEST_F(HotkeyServiceTest, WhatTapAndWindowBothTellCountsOnce) {
  shortcut = configuration(ShortcutChoice::doubleTapOption);
  start();
  // The main thread was busy: first everything from the tap, then everything from the window.
  for (const auto& event : {optionDown, optionUp, optionDown, optionUp}) taps.deliver(event);
  for (const auto& event : {optionDown, optionUp, optionDown, optionUp}) localKeys.deliver(event);
  executor.runUntilIdle();
  EXPECT_EQ(calls, "toggle ");
}

TEST_F(HotkeyServiceTest, ADisabledTapIsEnabledAgainAndGivesTheHeldKeyBack) {
  start();
  for (const auto type : {KeyEventType::tapDisabledByTimeout, KeyEventType::tapDisabledByUserInput}) {
    deliver(optionDown);
    taps.disable(type);
    EXPECT_FALSE(taps.isEnabled());
    executor.runUntilIdle();
    EXPECT_TRUE(taps.isEnabled());
    deliver(optionUp);
  }
  EXPECT_EQ(calls, "press release press release ");
  EXPECT_EQ(taps.creations(), 1);
}

TEST_F(HotkeyServiceTest, AHeldKeyIsGivenBackWhenItsShortcutGoes) {
  start();
  for (const auto choice : {ShortcutChoice::doubleTapOption, ShortcutChoice::disabled}) {
    deliver(optionDown);
    select(choice);
    EXPECT_EQ(calls, "press release ");
    select(ShortcutChoice::optionKey);
    deliver(optionUp);
    EXPECT_EQ(std::exchange(calls, {}), "press release ");
  }
}

TEST_F(HotkeyServiceTest, ATapThatCannotGoOnIsReplaced) {
  start();
  taps.refuseCreations(2);
  taps.disable(KeyEventType::tapDisabledByTimeout, /*forGood=*/true);
  executor.runUntilIdle();
  EXPECT_FALSE(taps.isInstalled());
  executor.advance(1'499ms);
  EXPECT_FALSE(taps.isInstalled());
  executor.advance(1ms);
  ASSERT_TRUE(taps.isInstalled()) << "the third attempt, after 1.5 s";
  deliver(optionDown);
  EXPECT_EQ(calls, "press ");
  EXPECT_EQ(executor.pendingTimers(), 0U);
}

TEST_F(HotkeyServiceTest, GivesUpAfterTwentyAttemptsUntilTheNextNotification) {
  taps.refuseCreations(1'000);
  start();
  EXPECT_EQ(taps.creationAttempts(), 1);
  executor.advance(5s);
  EXPECT_EQ(taps.creationAttempts(), 11);
  executor.advance(1min);
  EXPECT_EQ(taps.creationAttempts(), 21);
  EXPECT_EQ(executor.pendingTimers(), 0U);
  didBecomeActive.emit();
  executor.runUntilIdle();
  EXPECT_EQ(taps.creationAttempts(), 22);
  taps.refuseCreations(0);
  executor.advance(500ms);
  EXPECT_TRUE(taps.isInstalled()) << "and it tries again from there";
}

TEST_F(HotkeyServiceTest, DisablingTheShortcutEndsTheRetry) {
  taps.refuseCreations(5);
  start();
  select(ShortcutChoice::disabled);
  executor.advance(1min);
  EXPECT_EQ(taps.creationAttempts(), 1);
}

TEST_F(HotkeyServiceTest, LeavesNothingBehind) {
  start();
  taps.deliver(optionDown);
  shortcutDidChange.emit();
  service.reset();
  executor.runUntilIdle();
  EXPECT_EQ(calls, "");
  EXPECT_FALSE(taps.isInstalled());
  EXPECT_FALSE(localKeys.hasMonitors());
  EXPECT_FALSE(shortcutDidChange.hasSubscribers() || permissionDidChange.hasSubscribers() ||
               didBecomeActive.hasSubscribers());
  taps.refuseCreations(5);
  make();
  start();
  EXPECT_EQ(executor.pendingTimers(), 1U);
  service.reset();
  EXPECT_EQ(executor.pendingTimers(), 0U);
}
