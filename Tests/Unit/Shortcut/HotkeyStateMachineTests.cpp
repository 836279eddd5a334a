#include "Platform/KeyModifiers.h"
#include "Shortcut/HotkeyStateMachine.h"
#include "Shortcut/ShortcutChoice.h"
#include "Support/Testing.h"

using namespace murmel::keyModifier;
using Kind = ShortcutConfiguration::Kind;
using enum HotkeyStateMachine::Transition;

namespace {

constexpr VirtualKeyCode a = 0;
constexpr VirtualKeyCode d = virtualKey::d;
constexpr VirtualKeyCode fnKey = virtualKey::function;
constexpr VirtualKeyCode leftOption = virtualKey::leftOption;
constexpr VirtualKeyCode rightOption = virtualKey::rightOption;
constexpr VirtualKeyCode leftShift = virtualKey::leftShift;
constexpr VirtualKeyCode capsLockKey = virtualKey::capsLock;

struct Step {
  MRMHotkeyEvent event;
  HotkeyStateMachine::Transition expected = none;
  std::optional<ShortcutConfiguration> shortcutFromHere{};
};

MRMHotkeyEvent down(VirtualKeyCode key, std::uint64_t modifiers = 0, double at = 0) {
  return {KeyEventType::keyDown, modifiers, key, false, at};
}
MRMHotkeyEvent repeat(VirtualKeyCode key, std::uint64_t modifiers = 0) {
  return {KeyEventType::keyDown, modifiers, key, true, 0};
}
MRMHotkeyEvent up(VirtualKeyCode key, std::uint64_t modifiers = 0, double at = 0) {
  return {KeyEventType::keyUp, modifiers, key, false, at};
}
MRMHotkeyEvent flags(VirtualKeyCode key, std::uint64_t modifiers, double at = 0) {
  return {KeyEventType::flagsChanged, modifiers, key, false, at};
}

struct Story {
  std::string_view name;
  ShortcutConfiguration shortcut;
  std::vector<Step> steps;
};

void expectStories(const std::vector<Story>& stories) {
  for (const auto& story : stories) {
    HotkeyStateMachine machine;
    auto shortcut = story.shortcut;
    for (std::size_t index = 0; index < story.steps.size(); ++index) {
      const auto& step = story.steps[index];
      if (step.shortcutFromHere) shortcut = *step.shortcutFromHere;
      EXPECT_EQ(machine.consume(step.event, shortcut), step.expected) << story.name << ", step " << index;
    }
  }
}

const auto commandShiftD = configuration(ShortcutChoice::commandShiftD);
const auto functionKey = configuration(ShortcutChoice::functionKey);
const auto optionKey = configuration(ShortcutChoice::optionKey);
const auto doubleTap = configuration(ShortcutChoice::doubleTapOption);
const auto capsLockChoice = configuration(ShortcutChoice::capsLock);
const ShortcutConfiguration optionShift{Kind::modifiersOnly, leftShift, option | shift, ""};
constexpr auto commandShift = command | shift;

}  // namespace

TEST(HotkeyStateMachine, AKeyCombinationIsHeld) {
  expectStories({
      {"holding and letting go",
       commandShiftD,
       {{down(d, commandShift), press}, {up(d, commandShift), release}, {up(d)}}},
      {"auto-repeat is part of holding",
       commandShiftD,
       {{down(d, commandShift), press}, {repeat(d, commandShift)}, {up(d), release}}},
      {"a key that was held before is no press", commandShiftD, {{repeat(d, commandShift)}, {up(d)}}},
      {"nor is Fn", functionKey, {{repeat(fnKey)}, {up(fnKey)}}},
      {"one modifier too many refuses", commandShiftD, {{down(d, commandShift | option)}, {up(d)}}},
      {"letting go of the modifiers first does not stop",
       commandShiftD,
       {{down(d, commandShift), press}, {flags(55, shift)}, {flags(leftShift, 0)}, {up(d), release}}},
      {"flag changes of the same number are no key", commandShiftD, {{flags(d, commandShift)}}},
  });
}

TEST(HotkeyStateMachine, ModifiersAreHeld) {
  expectStories({
      {"Option alone, on either side",
       optionKey,
       {{flags(leftOption, option), press},
        {flags(leftOption, 0), release},
        {flags(rightOption, option), press},
        {flags(rightOption, 0), release}}},
      {"a chord waits for its last key, in any order",
       optionShift,
       {{flags(leftShift, shift)},
        {flags(leftOption, option | shift), press},
        {flags(leftShift, option), release},
        {flags(leftOption, 0)}}},
      {"any flag change that lacks the modifier releases",
       optionKey,
       {{flags(leftOption, option), press}, {flags(leftShift, 0), release}}},
      {"Fn as a key",
       functionKey,
       {{down(fnKey), press}, {repeat(fnKey)}, {up(fnKey), release}, {up(fnKey)}}},
      {"Fn as both at once counts once",
       functionKey,
       {{flags(fnKey, function), press}, {down(fnKey, function)}, {up(fnKey), release}, {flags(fnKey, 0)}}},
      {"a chord with Fn does not take the key form",
       {Kind::modifiersOnly, fnKey, function | shift, ""},
       {{down(fnKey, function | shift)}, {flags(fnKey, function | shift), press}, {up(fnKey)}}},
  });
}

TEST(HotkeyStateMachine, DoubleTapsOfOption) {
  const auto tap = [](double from, double to, HotkeyStateMachine::Transition last) {
    return std::vector<Step>{{flags(leftOption, option, from)}, {flags(leftOption, 0, to), last}};
  };
  const auto stepsOf = [](std::initializer_list<std::vector<Step>> parts) {
    std::vector<Step> all;
    for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  };
  // Starts at several uptimes: a difference of decimal fractions is rarely exact.
  for (const double start : {0.0, 10.0, 99.9, 1'234'567.8}) {
    const auto at = [start](double seconds) { return start + seconds; };
    expectStories({
        {"0.45 s from release to release are a double tap", doubleTap,
         stepsOf({tap(at(0), at(0.1), none), tap(at(0.5), at(0.55), toggle)})},
        {"0.46 s are not, and the second tap is a new first one", doubleTap,
         stepsOf({tap(at(0), at(0.1), none), tap(at(0.5), at(0.56), none), tap(at(0.9), at(1.0), toggle)})},
        {"a clock that went back starts anew", doubleTap,
         stepsOf({tap(at(0), at(0.3), none), tap(at(0.1), at(0.2), none), tap(at(0.3), at(0.4), toggle)})},
    });
  }
  expectStories({
      {"the two Options are one",
       doubleTap,
       {{flags(leftOption, option, 1)},
        {flags(leftOption, 0, 1)},
        {flags(rightOption, option, 1.1)},
        {flags(rightOption, 0, 1.2), toggle}}},
      {"double taps of other modifiers do not exist",
       {Kind::doubleTapModifier, 59, control, ""},
       {{flags(59, control, 1)}, {flags(59, 0, 1)}, {flags(59, control, 1.1)}, {flags(59, 0, 1.1)}}},
  });
}

TEST(HotkeyStateMachine, CapsLockToggles) {
  for (const double start : {0.0, 10.0, 99.9, 1'234'567.8}) {
    const auto at = [start](double seconds) { return start + seconds; };
    expectStories({
        {"events 0.119 s apart are one, and the second does not move the origin",
         capsLockChoice,
         {{flags(capsLockKey, 0, at(0)), toggle},
          {flags(capsLockKey, 0, at(0.119))},
          {flags(capsLockKey, 0, at(0.12)), toggle}}},
        {"a clock that went back does not mute it",
         capsLockChoice,
         {{flags(capsLockKey, 0, at(5)), toggle}, {flags(capsLockKey, 0, at(4.95)), toggle}}},
    });
  }
  expectStories({
      {"a configuration of another key never toggles",
       {Kind::capsLock, 58, 0, "Caps Lock"},
       {{flags(capsLockKey, 0, 1)}, {flags(58, 0, 2)}}},
  });
}

TEST(HotkeyStateMachine, ChangingTheShortcutForgetsEverything) {
  expectStories({
      {"disabled does nothing",
       configuration(ShortcutChoice::disabled),
       {{down(d, commandShift)}, {flags(fnKey, function)}, {flags(capsLockKey, 0)}}},
      {"a held key does not carry over",
       commandShiftD,
       {{down(d, commandShift), press},
        {flags(leftOption, option), press, optionKey},
        {up(d), none},
        {flags(leftOption, 0), release}}},
      {"a half double tap does not carry over",
       doubleTap,
       {{flags(leftOption, option, 1)},
        {flags(leftOption, 0, 1)},
        {down(a, 0, 1), none, optionKey},
        {flags(leftOption, option, 1.1), none, doubleTap},
        {flags(leftOption, 0, 1.1)}}},
  });
}

TEST(HotkeyStateMachine, OnlyKeysMakeEvents) {
  const auto event = MRMHotkeyEvent::from(
      {KeyEventType::keyDown, option | capsLock | 0x100, virtualKey::space, true, "x"}, 12.5);
  ASSERT_TRUE(event);
  EXPECT_EQ(event->modifiers, option) << "Caps Lock and foreign bits are left out";
  EXPECT_EQ(event->keyCode, virtualKey::space);
  EXPECT_TRUE(event->isRepeat);
  EXPECT_EQ(event->timestamp, 12.5);
  EXPECT_FALSE(MRMHotkeyEvent::from({KeyEventType::tapDisabledByTimeout, 0, 0, false, ""}, 1));
  EXPECT_FALSE(MRMHotkeyEvent::from({static_cast<KeyEventType>(1), 0, 0, false, ""}, 1));
}
