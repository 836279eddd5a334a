// The application ends in the middle of a dictation: the words do not.

#include "DictationDesk.h"
#include "Platform/Linux/X11/X11ScreenLock.h"

#include <cstdlib>
#include <random>

namespace murmel::test {

namespace {

class Ends : public DictationDesk {};

struct Moment {
  bool afterRelease;
  int milliseconds;
  bool bySignal;
};

/// From the last word to after the delivery; twenty more of them with MURMEL_MANY_MOMENTS.
std::vector<Moment> moments() {
  std::vector<Moment> all{{false, 0, false}, {true, 0, true}, {true, 120, false}};
  std::mt19937 random(20);
  for (int more = std::getenv("MURMEL_MANY_MOMENTS") == nullptr ? 0 : 20; more > 0; --more)
    all.push_back({random() % 2 == 0, static_cast<int>(random() % 2'500), random() % 2 == 0});
  return all;
}

}  // namespace

TEST_F(Ends, QuittingAndSignalsLoseNoWords) {
  const auto editor = openEditor("text");
  for (const auto& moment : moments()) {
    SCOPED_TRACE(std::to_string(moment.milliseconds) + (moment.bySignal ? " ms, signal" : " ms, command") +
                 (moment.afterRelease ? ", after the release" : ", while recording"));
    const auto before = textIn("text").size();
    start();
    holdShortcut();
    say(tenOfClubs);
    if (moment.afterRelease) releaseShortcut();
    desk.loop.runFor(std::chrono::milliseconds(moment.milliseconds));
    if (moment.bySignal) {
      ::kill(murmel->identifier(), SIGTERM);
    } else {
      EXPECT_EQ(command("quit"), 0);
    }
    ASSERT_TRUE(waitUntil([&] { return murmel->exitStatus().has_value(); }));
    EXPECT_EQ(murmel->exitStatus(), 0) << murmel->log();
    if (!moment.afterRelease) releaseShortcut();
    const bool onClipboard = DeliveryDesk::clipboardText().find(tenOfClubs.word) != std::string::npos;
    EXPECT_TRUE(onClipboard || textIn("text").find(tenOfClubs.word, before) != std::string::npos)
        << murmel->log();
    EXPECT_TRUE(onClipboard || waitForClipboard("old clipboard")) << "served by the keeper";
  }
}

TEST_F(Ends, AKilledMurmelLeavesWhatItServedOnTheClipboard) {
  start();
  const auto editor = openEditor("text");
  dictate(tenOfClubs);
  ASSERT_TRUE(waitForText(tenOfClubs.word, "text")) << murmel->log();
  EXPECT_EQ(command("copy-last"), 0);
  ASSERT_TRUE(waitForClipboard(tenOfClubs.word));
  ::kill(murmel->identifier(), SIGKILL);
  ASSERT_TRUE(waitUntil([&] { return murmel->exitStatus().has_value(); }));
  EXPECT_TRUE(waitForClipboard(tenOfClubs.word));
  ClipboardReader reader("CLIPBOARD");
  const auto hint = reader.read("x-kde-passwordManagerHint");
  EXPECT_TRUE(hint && hint->data == "secret");
}

TEST_F(Ends, WhatIsCancelledIsNotInsertedAndCanBeTriedAgain) {
  start();
  const auto editor = openEditor("text");
  EXPECT_EQ(command("start"), 0);
  ASSERT_TRUE(waitUntilCommand(isRecording)) << murmel->log();
  say(sevenOfClubs);
  constexpr std::uint8_t escapeKey = 9;
  desk.user.press(escapeKey, true);
  desk.user.press(escapeKey, false);
  ASSERT_TRUE(waitUntilCommand(std::string("! ") + isRecording)) << murmel->log();
  EXPECT_TRUE(DeliveryDesk::clipboardText().find("old clipboard") != std::string::npos);
  EXPECT_EQ(command("retry"), 0);
  ASSERT_TRUE(waitForText(sevenOfClubs.word, "text")) << murmel->log();
  expectOnceEach(textIn("text"), {sevenOfClubs});
}

TEST_F(Ends, NobodyIsHeardBehindALockedScreen) {
  if (!succeeds("command -v i3lock")) GTEST_SKIP() << "no i3lock";
  start();
  const ApplicationProcess locker({"i3lock", "-n"});
  const auto screen = X11ScreenLock::open();
  ASSERT_TRUE(waitUntil([&] { return (*screen)->isLocked(); }));
  for (int look = 0; look < 10; ++look) {
    EXPECT_EQ(command("start"), 1);
    EXPECT_FALSE(succeeds(isRecording));
    desk.loop.runFor(std::chrono::milliseconds(100));
  }
}

}  // namespace murmel::test
