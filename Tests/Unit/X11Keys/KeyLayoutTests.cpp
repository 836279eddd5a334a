#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"
#include "Platform/Linux/X11Keys/KeyLayout.h"
#include "Support/Testing.h"

#include <linux/input-event-codes.h>

using Kind = KeyRole::Kind;

namespace {

constexpr KeyRole modifier(VirtualKeyCode key, std::uint64_t flag = keyModifier::option) {
  return {Kind::modifier, key, flag};
}
constexpr KeyRole ordinary(VirtualKeyCode key) {
  return {Kind::ordinary, key, 0};
}
KeyRole noFlag(std::uint32_t evdevCode) {
  return {Kind::modifier, virtualKeyWithoutCounterpart(evdevCode), 0};
}

}  // namespace

TEST(KeyLayout, ModifiersAreWhatTheLayoutMakesOfThemAndOtherKeysWhereTheyAre) {
  struct Row {
    std::string when, layout, variant, options;
    std::uint32_t evdevCode;
    KeyRole role;
  };
  const std::vector<Row> rows{
      {"both Alts of the American layout", "us", "", "", KEY_RIGHTALT, modifier(virtualKey::rightOption)},
      {"AltGr of the German one", "de", "", "", KEY_RIGHTALT, noFlag(KEY_RIGHTALT)},
      {"but its left Alt", "de", "", "", KEY_LEFTALT, modifier(virtualKey::leftOption)},
      {"AltGr by option", "us", "", "lv3:ralt_switch", KEY_RIGHTALT, noFlag(KEY_RIGHTALT)},
      {"Russian", "ru", "", "", KEY_D, ordinary(virtualKey::d)},
      {"Dvorak keeps places, too", "us", "dvorak", "", KEY_D, ordinary(virtualKey::d)},
      {"Super is Command", "us", "", "", KEY_LEFTMETA,
       modifier(virtualKey::leftCommand, keyModifier::command)},
      {"Caps Lock", "us", "", "", KEY_CAPSLOCK, {Kind::capsLock, virtualKey::capsLock, 0}},
      {"Caps Lock that is a Control key", "us", "", "ctrl:nocaps", KEY_CAPSLOCK,
       modifier(virtualKey::leftControl, keyModifier::control)},
      {"Caps Lock that acts as one", "us", "", "caps:ctrl_modifier", KEY_CAPSLOCK,
       modifier(virtualKey::leftControl, keyModifier::control)},
      {"Caps Lock that is Escape is not Caps Lock", "us", "", "caps:escape", KEY_CAPSLOCK,
       ordinary(virtualKeyWithoutCounterpart(KEY_CAPSLOCK))},
      {"swapped Alt and Super", "us", "", "altwin:swap_alt_win", KEY_LEFTMETA,
       modifier(virtualKey::leftOption)},
      {"a key that switches layouts", "us,ru", "", "grp:caps_toggle", KEY_CAPSLOCK, noFlag(KEY_CAPSLOCK)},
      {"the Fn key of laptops", "us", "", "", KEY_WAKEUP,
       modifier(virtualKey::function, keyModifier::function)},
      {"Num Lock is a key", "us", "", "", KEY_NUMLOCK, ordinary(71)},
      {"a key without a place on the Mac", "us", "", "", KEY_PAUSE,
       ordinary(virtualKeyWithoutCounterpart(KEY_PAUSE))},
  };
  for (const auto& row : rows) {
    const auto layout = KeyLayout::named(row.layout, row.variant, row.options);
    ASSERT_TRUE(layout) << row.when;
    EXPECT_EQ(layout->role(row.evdevCode + xKeyCodeOffset), row.role) << row.when;
  }
}

TEST(KeyLayout, TheActiveGroupDecides) {
  auto layout = KeyLayout::named("us,de");
  ASSERT_TRUE(layout);
  EXPECT_EQ(layout->role(KEY_RIGHTALT + xKeyCodeOffset), modifier(virtualKey::rightOption));
  layout->update({.lockedGroup = 1});
  EXPECT_EQ(layout->role(KEY_RIGHTALT + xKeyCodeOffset), noFlag(KEY_RIGHTALT));
  constexpr std::uint32_t lock = 2;
  layout->update({.lockedModifiers = lock});
  EXPECT_TRUE(layout->capsLockIsOn());
  EXPECT_FALSE(KeyLayout::named("no such layout"));
}
