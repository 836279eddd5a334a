#include "DictationDesk.h"

namespace {

/// The shortcut is held, and the first phrase stands in the editor.
class LiveInsertion : public DictationDesk {
 protected:
  void SetUp() override {
    DictationDesk::SetUp();
    settings(R"("settings.shortcut": "optionKey", "settings.insertWhileRecording": true)");
    start();
    editor = openEditor("text");
    holdShortcut();
    say(eightOfSpadesAndMore);
    ASSERT_TRUE(waitUntil([&] { return !textIn("text").empty(); })) << murmel->log();
  }

  std::unique_ptr<ApplicationProcess> editor;
};

}  // namespace

TEST_F(LiveInsertion, PhrasesArriveWhileTheUserSpeaks) {
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

TEST_F(LiveInsertion, AfterASwitchOfWindowsTheRestOfThePhrasesIsOnTheClipboard) {
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
