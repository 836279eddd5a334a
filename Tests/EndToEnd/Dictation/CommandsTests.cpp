#include "DictationDesk.h"

namespace murmel::test {

TEST_F(DictationDesk, CommandsDriveARunningMurmel) {
  EXPECT_EQ(command("toggle"), 1) << "nobody is there";
  start();
  const auto editor = openEditor("text");

  EXPECT_EQ(command("copy-last"), 0);
  EXPECT_EQ(command("stop"), 0) << "nothing is recorded, and that is no failure";
  EXPECT_EQ(command("start"), 0);
  ASSERT_TRUE(waitUntilCommand(isRecording)) << murmel->log();
  EXPECT_EQ(command("start"), 0) << "it is on already";
  say(tenOfClubs);
  EXPECT_EQ(command("stop"), 0);
  ASSERT_TRUE(waitForText(tenOfClubs.word, "text")) << murmel->log();
  ASSERT_TRUE(waitForClipboard("old clipboard"));

  EXPECT_EQ(command("toggle"), 0);
  ASSERT_TRUE(waitUntilCommand(isRecording)) << murmel->log();
  say(sevenOfClubs);
  EXPECT_EQ(command("toggle"), 0);
  ASSERT_TRUE(waitForText(sevenOfClubs.word, "text")) << murmel->log();
  ASSERT_TRUE(waitForClipboard("old clipboard"));
  expectOnceEach(textIn("text"), {tenOfClubs, sevenOfClubs});

  EXPECT_EQ(command("copy-last"), 0);
  EXPECT_TRUE(waitForClipboard(sevenOfClubs.word));
  ClipboardReader reader("CLIPBOARD");
  const auto hint = reader.read("x-kde-passwordManagerHint");
  EXPECT_TRUE(hint && hint->data == "secret") << "clipboard managers are asked to forget it";
  EXPECT_EQ(command("no-such-command"), 2);
  quit();
  EXPECT_EQ(command("quit"), 1);
  EXPECT_EQ(dictationsSummed(), 2U);
}

TEST_F(DictationDesk, ASecondStartShowsTheFirst) {
  start();
  EXPECT_FALSE(succeeds(setupIsVisible)) << "the setup is done";
  MurmelProcess second({}, file("second.log"));
  ASSERT_TRUE(waitUntil([&] { return second.exitStatus().has_value(); }));
  EXPECT_EQ(second.exitStatus(), 0) << second.log();
  EXPECT_TRUE(waitUntilCommand(setupIsVisible));
  EXPECT_FALSE(murmel->exitStatus());
}

TEST_F(DictationDesk, TheFirstStartOfAllOpensTheSetup) {
  std::filesystem::remove(configuration() / "defaults.json");
  murmel.emplace(std::vector<std::string>{}, file("murmel.log"));
  EXPECT_TRUE(waitUntilCommand(setupIsVisible)) << murmel->log();
}

TEST_F(DictationDesk, TheSelfTestsEndByThemselvesBesideARunningMurmel) {
  start();
  for (const auto* flag : {"--mrm-release-launch-smoke", "--mrm-dock-reopen-smoke"}) {
    SCOPED_TRACE(flag);
    MurmelProcess selfTest({flag}, file("self-test.log"));
    ASSERT_TRUE(waitUntil([&] { return selfTest.exitStatus().has_value(); }));
    EXPECT_EQ(selfTest.exitStatus(), 0) << selfTest.log();
  }
  EXPECT_FALSE(murmel->exitStatus());
}

TEST_F(DictationDesk, ASignalEndsItProperlyAndItsWorkerWithIt) {
  start();
  const auto listWorkers = "pgrep -P " + std::to_string(murmel->identifier());
  ASSERT_TRUE(waitUntilCommand(listWorkers));
  const std::filesystem::path worker = "/proc/" + outputOf(listWorkers);
  ASSERT_TRUE(std::filesystem::exists(worker));
  ::kill(murmel->identifier(), SIGTERM);
  ASSERT_TRUE(waitUntil([&] { return murmel->exitStatus().has_value(); }));
  EXPECT_EQ(murmel->exitStatus(), 0);
  EXPECT_TRUE(waitUntil([&] { return !std::filesystem::exists(worker); }));
}

}  // namespace murmel::test
