#include "DictationDesk.h"
#include "Support/BuildPaths.h"

namespace murmel::test {

namespace {

struct Target {
  const char* name;
  const char* windowClass;
  std::vector<std::string> command;
  bool savesOnRequest = false;  ///< by Ctrl+S
  bool isTerminal = false;
};

/// A program in a terminal that writes what it is given, unchanged and at once.
std::string recorder(const std::string& file) {
  return "stty raw -echo; exec cat > '" + file + "'";
}

constexpr std::uint8_t letterS = 39;

}  // namespace

TEST_F(DictationDesk, TheTextArrivesOnceInRealApplicationsAndLeavesNoTrace) {
  const auto path = [this](const char* name) { return file(name).string(); };
  const Target targets[] = {
      {"gtk", "Mousepad", {"mousepad", "--disable-server", path("gtk")}, true},
      {"qt", "qt-editor", {buildFolder() + "/tests/qt-editor", path("qt")}},
      {"xterm", "XTerm", {"xterm", "-u8", "-e", "sh", "-c", recorder(path("xterm"))}, false, true},
      {"vte",
       "Xfce4-terminal",
       {"xfce4-terminal", "--disable-server", "-x", "sh", "-c", recorder(path("vte"))},
       false,
       true},
  };
  start();
  std::size_t dictations = 0;
  for (const auto& target : targets) {
    SCOPED_TRACE(target.name);
    const ApplicationProcess application(target.command);
    ASSERT_TRUE(waitUntil([&] {
      const auto front = desk.workspace().frontmostApplication();
      const bool isReady = !target.isTerminal || std::filesystem::exists(file(target.name));
      return isReady && front && front->bundleIdentifier == target.windowClass;
    }));
    dictate(tenOfClubs);
    ASSERT_TRUE(waitForSummaries(++dictations)) << murmel->log();
    ASSERT_TRUE(waitForClipboard("old clipboard"));
    if (target.savesOnRequest) desk.user.strike({controlKey, letterS});
    ASSERT_TRUE(waitForText(tenOfClubs.word, target.name)) << textIn(target.name) << murmel->log();
    EXPECT_EQ(countOf("clubs", textIn(target.name)), 1U) << textIn(target.name);
    // Some editors end a file with a line feed.
    EXPECT_LE(textIn(target.name).size(), std::string("ten of clubs\n").size()) << textIn(target.name);
    EXPECT_TRUE(DeliveryDesk::contentsOf("CLIPBOARD") == richClipboard());
    EXPECT_TRUE(DeliveryDesk::contentsOf("PRIMARY") == DeliveryDesk::selection());
    EXPECT_TRUE(desk.user.held().empty());
  }
  quit();
  EXPECT_EQ(dictationsSummed(), dictations) << "the log that is searched is the one that is written";
  EXPECT_EQ(countOf("clubs", murmel->log()), 0U);
  EXPECT_EQ(filesThatHold("clubs", home()), "");
  EXPECT_EQ(filesThatHold("clubs", std::getenv("XDG_RUNTIME_DIR")), "");
}

TEST_F(DictationDesk, WhatTheUserCopiesInBetweenStays) {
  start();
  const auto editor = openEditor("text");
  holdShortcut();
  say(tenOfClubs);
  const ClipboardOwner duringSpeech("CLIPBOARD", {{{{{"UTF8_STRING", "copied while speaking", "", 8}}}}});
  releaseShortcut();
  ASSERT_TRUE(waitForText(tenOfClubs.word, "text")) << murmel->log();
  EXPECT_TRUE(waitForClipboard("copied while speaking"));

  dictate(sevenOfClubs);
  ASSERT_TRUE(waitForText(sevenOfClubs.word, "text")) << murmel->log();
  // Whether the clipboard was brought back already or not: what was copied last must be there in the end.
  const ClipboardOwner afterwards("CLIPBOARD", {{{{{"UTF8_STRING", "copied after the paste", "", 8}}}}});
  ASSERT_TRUE(waitForSummaries(2));
  ASSERT_TRUE(waitUntilCommand(std::string("! ") + pillIsVisible));
  EXPECT_EQ(DeliveryDesk::clipboardText(), "copied after the paste");
  EXPECT_FALSE(afterwards.hasLost());
  quit();
  EXPECT_EQ(DeliveryDesk::clipboardText(), "copied after the paste");
}

TEST_F(DictationDesk, TheNextDictationMayBeginAtOnce) {
  start();
  const auto editor = openEditor("text");
  dictate(tenOfClubs);
  ASSERT_TRUE(waitForText(tenOfClubs.word, "text")) << murmel->log();
  dictate(sevenOfClubs);
  ASSERT_TRUE(waitForText(sevenOfClubs.word, "text")) << textIn("text") << murmel->log();
  ASSERT_TRUE(waitForClipboard("old clipboard"));
  expectOnceEach(textIn("text"), {tenOfClubs, sevenOfClubs});
  EXPECT_TRUE(DeliveryDesk::contentsOf("CLIPBOARD") == richClipboard());
}

TEST_F(DictationDesk, ASpaceStandsBetweenTwoDictationsUnlessTheUserTypesThere) {
  constexpr std::uint8_t letterX = 53;
  settings(R"("settings.shortcut": "optionKey", "settings.spaceBetweenDictations": true,
              "settings.historyEnabled": true)");
  start();
  const auto editor = openEditor("text");
  dictate(tenOfClubs);
  ASSERT_TRUE(waitForText(tenOfClubs.word, "text")) << murmel->log();
  dictate(sevenOfClubs);
  ASSERT_TRUE(waitForText(std::string(" ") + sevenOfClubs.word, "text")) << textIn("text") << murmel->log();
  EXPECT_EQ(command("copy-last"), 0);
  EXPECT_TRUE(waitUntil([] { return DeliveryDesk::clipboardText().starts_with(sevenOfClubs.word); }));
  desk.user.strike({letterX});
  dictate(eightOfSpadesAndMore);
  ASSERT_TRUE(waitForText(eightOfSpadesAndMore.word, "text")) << murmel->log();
  EXPECT_EQ(countOf("x ", textIn("text")), 0U) << textIn("text");
  ASSERT_TRUE(waitForSummaries(3));
  quit();
  EXPECT_EQ(command("history copy 2"), 0);
  EXPECT_TRUE(waitUntil([] { return DeliveryDesk::clipboardText().starts_with(sevenOfClubs.word); }))
      << DeliveryDesk::clipboardText();
}

TEST_F(DictationDesk, WhenTheMicrophoneIsPulledOutTheWordsSoFarArrive) {
  PulseModule headset("module-null-sink sink_name=headset");
  std::optional<DefaultSource> chosen("headset.monitor");
  start();
  const auto editor = openEditor("text");
  holdShortcut();
  say(sevenOfClubs, "headset");
  chosen.reset();
  headset.unload();
  ASSERT_TRUE(waitForText(sevenOfClubs.word, "text")) << murmel->log();
  ASSERT_TRUE(waitForSummaries(1));
  EXPECT_NE(murmel->log().find("device_changed=true"), std::string::npos) << murmel->log();
  ASSERT_TRUE(waitUntilCommand(std::string("! ") + isRecording));
  releaseShortcut();
  ASSERT_TRUE(waitForClipboard("old clipboard"));

  dictate(tenOfClubs);
  ASSERT_TRUE(waitForText(tenOfClubs.word, "text")) << murmel->log();
  expectOnceEach(textIn("text"), {sevenOfClubs, tenOfClubs});
}

}  // namespace murmel::test
