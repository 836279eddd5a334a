#include "DictationDesk.h"

TEST_F(DictationDesk, TheTextArrivesOnceInATerminalAndLeavesNoTrace) {
  start();
  const ApplicationProcess terminal(
      {"xterm", "-u8", "-e", "sh", "-c", "stty raw -echo; exec cat > '" + file("text").string() + "'"});
  ASSERT_TRUE(waitUntil([&] {
    const auto front = desk.workspace().frontmostApplication();
    return std::filesystem::exists(file("text")) && front && front->bundleIdentifier == "XTerm";
  }));
  dictate(tenOfClubs);
  ASSERT_TRUE(waitForSummaries(1)) << murmel->log();
  ASSERT_TRUE(waitForClipboard("old clipboard"));
  ASSERT_TRUE(waitForText(tenOfClubs.word, "text")) << murmel->log();
  EXPECT_EQ(countOf("clubs", textIn("text")), 1U) << textIn("text");
  EXPECT_TRUE(DeliveryDesk::contentsOf("CLIPBOARD") == richClipboard());
  EXPECT_TRUE(DeliveryDesk::contentsOf("PRIMARY") == DeliveryDesk::selection());
  EXPECT_TRUE(desk.user.held().empty());
  quit();
  EXPECT_EQ(dictationsSummed(), 1U) << "the log that is searched is the one that is written";
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
  ASSERT_TRUE(waitForClipboard("old clipboard")) << "although the next dictation began at once";
  EXPECT_TRUE(DeliveryDesk::contentsOf("CLIPBOARD") == richClipboard());
  expectOnceEach(textIn("text"), {tenOfClubs, sevenOfClubs});
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
