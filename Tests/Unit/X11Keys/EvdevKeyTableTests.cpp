#include "Platform/Linux/Keys/EvdevKeyTable.h"
#include "Support/Testing.h"

#include <linux/input-event-codes.h>

TEST(EvdevKeyTable, NoTwoKeysShareACode) {
  std::map<VirtualKeyCode, std::uint32_t> seen;
  for (std::uint32_t evdevCode = 0; evdevCode < KEY_CNT; ++evdevCode) {
    const auto [entry, isNew] = seen.emplace(virtualKeyFromEvdev(evdevCode), evdevCode);
    EXPECT_TRUE(isNew) << evdevCode << " and " << entry->second << " are both " << entry->first;
  }
}

TEST(EvdevKeyTable, AFullKeyboardIsMappedOntoTheMacsKeys) {
  std::set<std::uint32_t> withoutCounterpart;
  for (std::uint32_t evdevCode = KEY_ESC; evdevCode <= KEY_COMPOSE; ++evdevCode) {
    if (virtualKeyFromEvdev(evdevCode) > 127) withoutCounterpart.insert(evdevCode);
  }
  // 84 is no key; the rest are keys of PC, Japanese and special keyboards that no Mac has.
  EXPECT_EQ(
      withoutCounterpart,
      (std::set<std::uint32_t>{84, KEY_SCROLLLOCK, KEY_ZENKAKUHANKAKU, KEY_KATAKANA, KEY_HIRAGANA, KEY_HENKAN,
                               KEY_KATAKANAHIRAGANA, KEY_MUHENKAN, KEY_KPJPCOMMA, KEY_SYSRQ, KEY_LINEFEED,
                               KEY_MACRO, KEY_POWER, KEY_KPPLUSMINUS, KEY_PAUSE, KEY_SCALE}));
}

TEST(EvdevKeyTable, KeysAreWhereTheMacHasThem) {
  struct Row {
    std::uint32_t evdevCode;
    VirtualKeyCode keyCode;
  };
  const std::vector<Row> rows{
      {KEY_D, virtualKey::d},
      {KEY_ENTER, virtualKey::returnKey},
      {KEY_TAB, virtualKey::tab},
      {KEY_SPACE, virtualKey::space},
      {KEY_BACKSPACE, virtualKey::deleteKey},
      {KEY_ESC, virtualKey::escape},
      {KEY_CAPSLOCK, virtualKey::capsLock},
      {KEY_LEFTALT, virtualKey::leftOption},
      {KEY_RIGHTALT, virtualKey::rightOption},
      {KEY_LEFTCTRL, virtualKey::leftControl},
      {KEY_RIGHTCTRL, virtualKey::rightControl},
      {KEY_LEFTMETA, virtualKey::leftCommand},
      {KEY_RIGHTMETA, virtualKey::rightCommand},
      {KEY_LEFTSHIFT, virtualKey::leftShift},
      {KEY_RIGHTSHIFT, virtualKey::rightShift},
      {KEY_FN, virtualKey::function},
      {KEY_HOME, virtualKey::home},
      {KEY_PAGEUP, virtualKey::pageUp},
      {KEY_DELETE, virtualKey::forwardDelete},
      {KEY_END, virtualKey::end},
      {KEY_PAGEDOWN, virtualKey::pageDown},
      {KEY_LEFT, virtualKey::leftArrow},
      {KEY_RIGHT, virtualKey::rightArrow},
      {KEY_DOWN, virtualKey::downArrow},
      {KEY_UP, virtualKey::upArrow},
      {KEY_A, 0},  // the letters' order is the Mac's own
      {KEY_Z, 6},  // below A on ANSI, whatever the layout writes there
      {KEY_102ND, 10},
      {KEY_5, 23},  // 5 and 6 are the wrong way round, as the Mac has them
      {KEY_6, 22},
      {KEY_F5, 96},
      {KEY_KP8, 91},
  };
  for (const auto& row : rows) EXPECT_EQ(virtualKeyFromEvdev(row.evdevCode), row.keyCode) << row.evdevCode;
}
