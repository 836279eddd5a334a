#include "Platform/Fake/ManualExecutor.h"
#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"
#include "Platform/Linux/X11Keys/KeyEventTranslator.h"
#include "Support/Testing.h"

#include <linux/input-event-codes.h>

using namespace murmel::keyModifier;

namespace {

constexpr std::uint16_t hardware = 9;
constexpr std::uint16_t secondKeyboard = 10;
constexpr std::uint16_t xtest = 5;

std::uint32_t code(std::uint32_t evdevCode) {
  return evdevCode + xKeyCodeOffset;
}

/// "+2" a key down, "*2" its repeat, "-2" up, "~58" flags changed; then the flags, if any.
std::string described(const std::vector<KeyEvent>& events) {
  std::string text;
  for (const auto& event : events) {
    if (!text.empty()) text += ' ';
    switch (event.type) {
      case KeyEventType::keyDown:
        text += event.isRepeat ? '*' : '+';
        break;
      case KeyEventType::keyUp:
        text += '-';
        break;
      default:
        text += '~';
    }
    text += std::to_string(event.keyCode);
    for (const auto& [flag, letter] :
         {std::pair(capsLock, 'L'), {shift, 'S'}, {control, 'C'}, {option, 'O'}, {command, 'M'}}) {
      if ((event.flags & flag) != 0) text += letter;
    }
    EXPECT_TRUE(event.characters.empty());
  }
  return text;
}

class KeyEventTranslatorTest : public ::testing::Test {
 protected:
  std::string feed(std::uint32_t evdevCode, bool goesDown, std::uint16_t source = hardware) {
    std::vector<KeyEvent> events;
    translator.consume({.keyCode = code(evdevCode),
                        .goesDown = goesDown,
                        .time = time,
                        .source = source,
                        .isSynthetic = source == xtest},
                       layout, events);
    return described(events);
  }
  std::string end() {
    std::vector<KeyEvent> events;
    translator.tellWithheldRelease(layout, events);
    return described(events);
  }
  std::string down(std::uint32_t evdevCode, std::uint16_t source = hardware) {
    ++time;
    return feed(evdevCode, true, source);
  }
  std::string up(std::uint32_t evdevCode, std::uint16_t source = hardware) {
    ++time;
    const auto before = feed(evdevCode, false, source);
    return before + end();
  }
  std::string reconcile(std::initializer_list<std::uint32_t> evdevCodes) {
    PressedKeySet keys;
    for (const auto evdevCode : evdevCodes) keys.set(code(evdevCode));
    std::vector<KeyEvent> events;
    translator.reconcile(keys, layout, events);
    return described(events);
  }

  std::uint32_t time = 1'000;
  ManualExecutor executor;
  InjectedKeyList injected{executor};
  KeyLayout layout = *KeyLayout::named("us");
  KeyEventTranslator translator{injected};
};

}  // namespace

TEST_F(KeyEventTranslatorTest, FlagsFollowTheKeysOfBothSides) {
  EXPECT_EQ(down(KEY_LEFTALT), "~58O");
  EXPECT_EQ(down(KEY_RIGHTALT), "~61O");
  EXPECT_EQ(down(KEY_SPACE), "+49O");
  EXPECT_EQ(up(KEY_LEFTALT), "~58O") << "the other one is still held";
  EXPECT_EQ(up(KEY_RIGHTALT), "~61");
  EXPECT_EQ(up(KEY_SPACE), "-49");
}

TEST_F(KeyEventTranslatorTest, CapsLockIsToldOnceWhenItGoesDown) {
  EXPECT_EQ(down(KEY_CAPSLOCK), "~57");
  layout.update({.lockedModifiers = 2});
  EXPECT_EQ(up(KEY_CAPSLOCK), "");
  EXPECT_EQ(down(KEY_A), "+0L");
}

TEST_F(KeyEventTranslatorTest, AReleaseAndAPressRightAfterItAreARepeat) {
  EXPECT_EQ(down(KEY_SPACE), "+49");
  ++time;
  EXPECT_EQ(feed(KEY_SPACE, false), "") << "withheld until it is clear what it is";
  EXPECT_TRUE(translator.isWithholdingRelease());
  EXPECT_EQ(feed(KEY_SPACE, true), "*49");
  EXPECT_FALSE(translator.isWithholdingRelease());
  EXPECT_EQ(feed(KEY_SPACE, false), "");
  time += 10;
  EXPECT_EQ(feed(KEY_SPACE, true), "*49");
  EXPECT_EQ(end(), "");
  EXPECT_EQ(up(KEY_SPACE), "-49");
  // Other ways to repeat.
  EXPECT_EQ(down(KEY_SPACE), "+49");
  EXPECT_EQ(down(KEY_SPACE), "*49");
  EXPECT_EQ(up(KEY_SPACE), "-49");
  EXPECT_EQ(down(KEY_LEFTALT), "~58O");
  EXPECT_EQ(down(KEY_LEFTALT), "") << "a modifier does not change by repeating";
  EXPECT_EQ(feed(KEY_LEFTALT, false), "~58") << "and its release need not wait";
  // Held since before we were there: only the server knows.
  std::vector<KeyEvent> first;
  translator.consume(
      {.keyCode = code(KEY_A), .goesDown = true, .time = ++time, .source = hardware, .isRepeat = true},
      layout, first);
  EXPECT_EQ(described(first), "*0");
}

TEST_F(KeyEventTranslatorTest, WhatIsNoRepeat) {
  EXPECT_EQ(down(KEY_SPACE), "+49");
  ++time;
  EXPECT_EQ(feed(KEY_SPACE, false), "");
  EXPECT_EQ(feed(KEY_A, true), "-49 +0") << "another key: the release was real";
  EXPECT_EQ(up(KEY_A), "-0");
  EXPECT_EQ(down(KEY_SPACE), "+49");
  EXPECT_EQ(feed(KEY_SPACE, false), "");
  time += 11;
  EXPECT_EQ(feed(KEY_SPACE, true), "-49 +49") << "after a while";
  EXPECT_EQ(feed(KEY_SPACE, false), "");
  EXPECT_EQ(feed(KEY_SPACE, true, secondKeyboard), "-49 +49") << "from another keyboard";
  EXPECT_EQ(up(KEY_SPACE), "-49");
  EXPECT_EQ(feed(KEY_SPACE, true, xtest), "+49");
  EXPECT_EQ(feed(KEY_SPACE, false, xtest), "-49") << "programs type several keys in a millisecond";
  EXPECT_EQ(feed(KEY_SPACE, true, xtest), "+49");
}

TEST_F(KeyEventTranslatorTest, StrayReleasesMeanNothing) {
  EXPECT_EQ(up(KEY_SPACE), "");
  EXPECT_EQ(up(KEY_LEFTALT), "");
  EXPECT_EQ(down(KEY_SPACE), "+49");
  EXPECT_EQ(up(KEY_SPACE), "-49");
  EXPECT_EQ(up(KEY_SPACE), "");
}

TEST_F(KeyEventTranslatorTest, AReleaseIsThatOfTheKeyThatWentDownWhateverTheLayoutSaysNow) {
  EXPECT_EQ(down(KEY_RIGHTALT), "~61O");
  layout = *KeyLayout::named("de");
  EXPECT_EQ(down(KEY_SPACE), "+49O");
  EXPECT_EQ(up(KEY_RIGHTALT), "~61");
  EXPECT_EQ(down(KEY_RIGHTALT), "~356") << "now it is AltGr: no Option, and no flag";
}

TEST_F(KeyEventTranslatorTest, ReconcilingMakesUpForWhatWasMissed) {
  EXPECT_EQ(down(KEY_LEFTALT), "~58O");
  EXPECT_EQ(down(KEY_SPACE), "+49O");
  EXPECT_EQ(reconcile({KEY_LEFTALT, KEY_SPACE}), "");
  EXPECT_EQ(reconcile({KEY_LEFTSHIFT, KEY_A}), "~58 -49");
  EXPECT_EQ(down(KEY_S), "+1S") << "a modifier that went down unseen counts, silently";
  EXPECT_EQ(up(KEY_LEFTSHIFT), "~56");
  EXPECT_EQ(up(KEY_A), "-0");
  ++time;
  EXPECT_EQ(feed(KEY_S, false), "");
  EXPECT_EQ(reconcile({}), "") << "a release that may be half a repeat is not missed";
  EXPECT_EQ(end(), "-1");
}

TEST_F(KeyEventTranslatorTest, WhatWeInjectIsNotTheUsers) {
  // Option is held for a dictation; we let it go on the server, paste, and the user lets go later.
  EXPECT_EQ(down(KEY_LEFTALT), "~58O");
  injected.expect(code(KEY_LEFTALT), false);
  for (const bool goesDown : {true, false}) {
    injected.expect(code(goesDown ? KEY_LEFTCTRL : KEY_V), goesDown);
    injected.expect(code(goesDown ? KEY_V : KEY_LEFTCTRL), goesDown);
  }
  EXPECT_EQ(up(KEY_LEFTALT, xtest), "");
  EXPECT_EQ(down(KEY_LEFTCTRL, xtest), "");
  EXPECT_EQ(down(KEY_V, xtest), "");
  EXPECT_EQ(reconcile({KEY_LEFTCTRL, KEY_V}), "") << "neither a missed release nor keys that are held";
  EXPECT_EQ(up(KEY_V, xtest), "");
  EXPECT_EQ(up(KEY_LEFTCTRL, xtest), "");
  EXPECT_EQ(down(KEY_A), "+0O") << "the user still holds Option and nothing else";
  EXPECT_EQ(up(KEY_A), "-0O");
  EXPECT_EQ(up(KEY_LEFTALT), "~58");
  EXPECT_EQ(reconcile({}), "");
}

TEST_F(KeyEventTranslatorTest, OnlyWhatWasAnnouncedIsLeftOut) {
  injected.expect(code(KEY_V), true);
  EXPECT_EQ(down(KEY_V), "+9") << "the user's own key at that moment";
  EXPECT_EQ(up(KEY_V), "-9");
  EXPECT_EQ(down(KEY_V, xtest), "");
  EXPECT_EQ(up(KEY_V, xtest), "") << "it is down for nobody";
  EXPECT_EQ(down(KEY_V, xtest), "+9") << "another program's injection";
  EXPECT_EQ(up(KEY_V, xtest), "-9");
  injected.expect(code(KEY_V), true);
  executor.advance(2'001ms);
  EXPECT_EQ(down(KEY_V, xtest), "+9") << "an announcement does not last";
}
