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
  // The letters' order is the Mac's own; Z is below A whatever the layout writes there; 5 and 6 are the wrong
  // way round, as the Mac has them. Modifiers, Esc and Space are pressed in the tests of the shortcut.
  const std::vector<std::array<std::uint32_t, 2>> rows{
      {KEY_A, 0}, {KEY_Z, 6}, {KEY_102ND, 10}, {KEY_5, 23}, {KEY_6, 22}, {KEY_F5, 96}, {KEY_KP8, 91}};
  for (const auto& [evdevCode, keyCode] : rows)
    EXPECT_EQ(virtualKeyFromEvdev(evdevCode), keyCode) << evdevCode;
}
