// The application ends in the middle of a dictation: the words do not.

#include "DictationDesk.h"
#include "Platform/Linux/X11/X11ScreenLock.h"
#include "SessionManager.h"

#include <iostream>

namespace {

/// Says at every line that the computer is being shut down.
constexpr const char* playedLogind = R"(
import sys
from gi.repository import Gio, GLib
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.call_sync('org.freedesktop.DBus', '/org/freedesktop/DBus', 'org.freedesktop.DBus', 'RequestName',
              GLib.Variant('(su)', ('org.freedesktop.login1', 0)), None, 0, -1, None)
for line in sys.stdin:
    bus.emit_signal(None, '/org/freedesktop/login1', 'org.freedesktop.login1.Manager', 'PrepareForShutdown',
                    GLib.Variant('(b)', (True,)))
)";

/// Ways for the application to end.
enum class By { command, signal, sessionManager, shutdown };

class Ends : public DictationDesk {
 protected:
  void SetUp() override {
    DictationDesk::SetUp();
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", std::getenv("DBUS_SESSION_BUS_ADDRESS"), 1);  // one plays both
  }
  void end(By way) {
    const auto workers = outputOf("pgrep -d, -P " + std::to_string(murmel->identifier()));
    switch (way) {
      case By::command:
        EXPECT_EQ(command("quit"), 0);
        break;
      case By::signal:
        ::kill(murmel->identifier(), SIGTERM);
        break;
      case By::sessionManager:
        sessionManager->ask(SessionManager::Request::save);
        EXPECT_TRUE(waitUntil([&] { return !sessionManager->isSaving(); }));
        EXPECT_FALSE(murmel->exitStatus() || succeeds(isRecording)) << "the session may go on";
        sessionManager->ask(SessionManager::Request::saveAndEnd);
        break;
      case By::shutdown:
        logind.tell("now");
        break;
    }
    ASSERT_TRUE(waitUntil([&] { return murmel->exitStatus().has_value(); }));
    EXPECT_EQ(murmel->exitStatus(), 0) << murmel->log();
    EXPECT_TRUE(waitUntilCommand("! ps -p " + workers)) << "its worker goes with it";
  }

  std::optional<SessionManager> sessionManager;
  ApplicationProcess logind{{"/usr/bin/python3", "-c", playedLogind}};
};

struct Moment {
  bool afterRelease;
  int milliseconds;
  By way;
};

/// From the last word to after the delivery.
constexpr std::array moments{
    Moment{false, 0, By::command},          Moment{true, 0, By::signal},    Moment{true, 120, By::command},
    Moment{false, 300, By::sessionManager}, Moment{true, 50, By::shutdown},
};

}  // namespace

TEST_F(Ends, QuittingAndTheEndOfTheSessionLoseNoWords) {
  const auto editor = openEditor("text");
  sessionManager.emplace();
  for (const auto& moment : moments) {
    SCOPED_TRACE(std::to_string(moment.milliseconds) + " ms, way " +
                 std::to_string(static_cast<int>(moment.way)) +
                 (moment.afterRelease ? ", after the release" : ", while recording"));
    const auto before = textIn("text").size();
    start();
    holdShortcut();
    say(tenOfClubs);
    if (moment.afterRelease) releaseShortcut();
    desk.loop.runFor(std::chrono::milliseconds(moment.milliseconds));
    end(moment.way);
    if (!moment.afterRelease) releaseShortcut();
    const bool onClipboard = DeliveryDesk::clipboardText().find(tenOfClubs.word) != std::string::npos;
    EXPECT_TRUE(onClipboard || textIn("text").find(tenOfClubs.word, before) != std::string::npos)
        << murmel->log();
    EXPECT_TRUE(onClipboard || waitForClipboard("old clipboard")) << "served by the keeper";
  }
}

/// Takes a quarter of an hour.
TEST_F(Ends, NothingOfAMinuteIntoATerminalIsLostAtTwentyMoments) {
  if (std::getenv("MURMEL_MANY_MOMENTS") == nullptr) GTEST_SKIP() << "MURMEL_MANY_MOMENTS is not set";
  const auto typed = file("typed").string();
  const ApplicationProcess terminal({"xterm", "-e", "stty raw -echo; exec cat >" + typed});
  ASSERT_TRUE(waitUntil([&] { return desk.isInFront(terminal) && std::filesystem::exists(typed); }));
  sessionManager.emplace();
  std::mt19937 random(std::random_device{}());
  for (int round = 0; round < 20; ++round) {
    settings(std::string(R"("settings.shortcut": "optionKey", "settings.insertWhileRecording": )") +
             (round % 2 == 0 ? "true" : "false"));
    const auto before = textIn("typed").size();
    start();
    holdShortcut();
    {
      const auto cards = std::string("/usr/share/pocketsphinx/test/data/cards/");
      ApplicationProcess speaker({"sh", "-c",
                                  "while paplay --latency-msec=200 -d mic " + cards +
                                      "001.wav; do sleep 1; echo; paplay --latency-msec=200 -d mic " + cards +
                                      "003.wav; sleep 1; echo; done"});
      for (auto seconds = random() % 60; seconds > 0; --seconds) desk.loop.runFor(std::chrono::seconds(1));
      const auto count = speaker.lines().size();
      if (round % 4 >= 2) releaseShortcut();
      desk.loop.runFor(std::chrono::milliseconds(round % 4 >= 2 ? random() % 1'500 : 0));
      end(static_cast<By>(random() % 4));
      releaseShortcut();
      std::string arrived;
      std::size_t words = 0;
      waitUntil([&] {
        arrived = textIn("typed").substr(before) + " " + DeliveryDesk::clipboardText();
        words = countOf("ten", arrived) + countOf("seven", arrived);
        return words >= count;
      });
      std::cout << "said " << count << ", arrived " << words << std::endl;
      EXPECT_GE(words, count) << arrived << murmel->log();
    }
    outputOf("printf 'old clipboard' | xclip -selection clipboard >/dev/null 2>&1");
  }
}

TEST_F(Ends, AKilledMurmelLeavesWhatItServedOnTheClipboard) {
  start();
  const auto editor = openEditor("text");
  dictate(tenOfClubs);
  ASSERT_TRUE(waitForText(tenOfClubs.word, "text")) << murmel->log();
  ASSERT_TRUE(waitForClipboard("old clipboard"));
  ASSERT_TRUE(waitForSummaries(1));
  EXPECT_EQ(command("copy-last"), 0);
  ASSERT_TRUE(waitForClipboard(tenOfClubs.word));
  ::kill(murmel->identifier(), SIGKILL);
  ASSERT_TRUE(waitUntil([&] { return murmel->exitStatus().has_value(); }));
  EXPECT_TRUE(waitForClipboard(tenOfClubs.word));
  ClipboardReader reader("CLIPBOARD");
  const auto hint = reader.read("x-kde-passwordManagerHint");
  EXPECT_TRUE(hint && hint->data == "secret");
}

TEST_F(Ends, WordsThatNobodyKeepsAreServedUntilTheyArePasted) {
  const auto copy = installCopy();
  std::filesystem::remove(copy + "/lib/murmel/Workers/mrm-clipboard-keeper");
  start(copy + "/bin/murmel");
  holdShortcut();
  say(tenOfClubs);
  ::kill(murmel->identifier(), SIGTERM);
  ASSERT_TRUE(waitUntilCommand("xdotool search --onlyvisible --name '^Messages of Murmel$'"))
      << murmel->log();
  releaseShortcut();
  EXPECT_FALSE(murmel->exitStatus());
  EXPECT_TRUE(waitForClipboard(tenOfClubs.word));
  EXPECT_TRUE(waitUntil([&] { return murmel->exitStatus().has_value(); }));
}

TEST_F(Ends, WhatIsCancelledIsNotInsertedAndCanBeTriedAgain) {
  start();
  const auto editor = openEditor("text");
  EXPECT_EQ(command("start"), 0);
  ASSERT_TRUE(waitUntilCommand(isRecording)) << murmel->log();
  say(sevenOfClubs);
  constexpr std::uint8_t escapeKey = 9;
  desk.user.strike({escapeKey});
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
