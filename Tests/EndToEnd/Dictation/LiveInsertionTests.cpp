#include "DictationDesk.h"

namespace murmel::test {

TEST_F(DictationDesk, PhrasesArriveWhileTheUserSpeaks) {
  settings(R"("settings.shortcut": "optionKey", "settings.insertWhileRecording": true)");
  start();
  const auto editor = openEditor("text");
  holdShortcut();
  say(eightOfSpadesAndMore);
  ASSERT_TRUE(waitUntil([&] { return !textIn("text").empty(); })) << murmel->log();
  EXPECT_EQ(dictationsSummed(), 0U) << "it is still recording";
  say(sevenOfClubs);
  releaseShortcut();
  ASSERT_TRUE(waitForSummaries(1));
  EXPECT_EQ(countOf("spades", textIn("text")), 1U) << textIn("text");
  EXPECT_EQ(countOf(" seven", textIn("text")), 2U) << "of hearts, and of clubs: " << textIn("text");
  EXPECT_NE(murmel->log().find("live_blocked=none"), std::string::npos) << murmel->log();
  EXPECT_TRUE(waitForClipboard("old clipboard"));
  EXPECT_TRUE(DeliveryDesk::contentsOf("CLIPBOARD") == richClipboard());
}

TEST_F(DictationDesk, AfterASwitchOfWindowsTheRestOfThePhrasesIsOnTheClipboard) {
  settings(R"("settings.shortcut": "optionKey", "settings.insertWhileRecording": true)");
  start();
  const auto editor = openEditor("text");
  holdShortcut();
  say(eightOfSpadesAndMore);
  ASSERT_TRUE(waitUntil([&] { return !textIn("text").empty(); })) << murmel->log();
  const auto inserted = textIn("text");

  const auto other = openEditor("other");
  say(sevenOfClubs);
  releaseShortcut();
  ASSERT_TRUE(waitForSummaries(1)) << murmel->log();
  EXPECT_NE(murmel->log().find("live_blocked=app_changed"), std::string::npos) << murmel->log();
  EXPECT_TRUE(waitForClipboard(sevenOfClubs.word)) << DeliveryDesk::clipboardText();
  EXPECT_EQ(countOf("spades", DeliveryDesk::clipboardText()), 0U) << "what is in the editor already";
  EXPECT_EQ(textIn("text"), inserted);
  EXPECT_EQ(textIn("other"), "");
  EXPECT_TRUE(desk.isInFront(*other)) << "the user stays where they went";
}

}  // namespace murmel::test
