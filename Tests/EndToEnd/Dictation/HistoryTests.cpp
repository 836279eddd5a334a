#include "DictationDesk.h"
#include "History/HistoryFile.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Storage/KeychainEncryptionKeyStore.h"
#include "Support/KeyringControl.h"

TEST_F(DictationDesk, TheHistoryIsSealedAndOutlivesARestart) {
  settings(R"("settings.shortcut": "optionKey", "settings.historyEnabled": true)");
  const auto sealed = data() / "history.sealed";
  std::size_t sizeOfOne = 0;
  for (const auto& speech : {tenOfClubs, sevenOfClubs}) {
    start();
    const auto editor = openEditor(speech.recording);
    dictate(speech);
    ASSERT_TRUE(waitForText(speech.word, speech.recording)) << murmel->log();
    ASSERT_TRUE(waitUntil([&] {
      std::error_code none;
      const auto size = std::filesystem::file_size(sealed, none);
      return !none && size > sizeOfOne;
    })) << murmel->log();
    quit();
    sizeOfOne = std::filesystem::file_size(sealed);
    EXPECT_EQ(filesThatHold("clubs", home()), "");
    EXPECT_EQ(countOf("clubs", murmel->log()), 0U);
  }

  // What a command changes is in force at once, and what it copies outlives it.
  start();
  EXPECT_EQ(command("settings set historyEnabled false"), 0);
  desk.loop.runFor(std::chrono::seconds(1));
  const auto editor = openEditor("unkept");
  dictate(eightOfSpadesAndMore);
  ASSERT_TRUE(waitForText(eightOfSpadesAndMore.word, "unkept")) << murmel->log();
  quit();
  EXPECT_EQ(command("history copy 1"), 0);
  EXPECT_TRUE(waitForClipboard(sevenOfClubs.word));

  // The second run has kept what the first one wrote, the third nothing.
  PosixFileSystem files;
  SecretServiceStore secrets;
  KeychainEncryptionKeyStore keys(secrets,
                                  "app.murmel.Murmel.Development" + std::string(historyKeyServiceSuffix));
  const auto entries = HistoryFile(historyFile(files, keys, data())).load();
  ASSERT_TRUE(entries);
  ASSERT_EQ(entries->size(), 2U);
  // The newest first.
  expectOnceEach(entries->at(0).text.reveal(), {sevenOfClubs});
  expectOnceEach(entries->at(1).text.reveal(), {tenOfClubs});
}

TEST_F(DictationDesk, TheHistoryWindowShowsCopiesAndDeletesWhatTheKeyRingUnlocks) {
  constexpr const char* historyIsInFront =
      "xdotool getactivewindow getwindowname | grep -q '^Murmel History$'";
  const auto tap = [this](std::uint8_t key) {
    desk.user.strike({key});
    desk.loop.runFor(std::chrono::milliseconds(100));
  };
  constexpr std::uint8_t tab = 23;
  constexpr std::uint8_t enter = 36;
  constexpr std::uint8_t space = 65;
  constexpr std::uint8_t control = 37;
  constexpr std::uint8_t c = 54;
  constexpr std::uint8_t deletion = 119;
  settings(R"("settings.shortcut": "optionKey", "settings.historyEnabled": true)");
  std::filesystem::remove(data() / "history.sealed");
  start();
  const auto editor = openEditor("spoken");
  dictate(sevenOfClubs);
  ASSERT_TRUE(waitForText(sevenOfClubs.word, "spoken")) << murmel->log();
  quit();

  keyringControl::lock();
  start();
  EXPECT_EQ(command("open-history"), 0);
  ASSERT_TRUE(waitUntilCommand(historyIsInFront));
  keyringControl::unlock();
  for (int step = 0; step < 3; ++step) tap(tab);  // to the button that unlocks
  tap(space);
  EXPECT_TRUE(waitUntil([&] {
    desk.user.strike({control, c});
    return DeliveryDesk::clipboardText().find(sevenOfClubs.word) != std::string::npos;
  })) << murmel->log();
  tap(deletion);
  tap(tab);  // from the safe answer
  tap(enter);
  const auto list = std::string(MURMEL_EXECUTABLE) + " history list";
  EXPECT_TRUE(waitUntilCommand(list + " | grep -q empty")) << outputOf(list);
}

TEST_F(DictationDesk, TheEndSaysWhatTheHistoryCouldNotKeep) {
  settings(R"("settings.shortcut": "optionKey", "settings.historyEnabled": true)");
  keyringControl::lock();
  start();
  const auto editor = openEditor("spoken");
  dictate(sevenOfClubs);
  ASSERT_TRUE(waitForText(sevenOfClubs.word, "spoken")) << murmel->log();
  const auto told = file("told").string();
  const ApplicationProcess bus({"sh", "-c", "exec dbus-monitor --session >" + told});
  ASSERT_TRUE(waitUntilCommand("grep -q NameAcquired " + told));
  quit();
  keyringControl::unlock();
  EXPECT_TRUE(waitUntilCommand("grep -q 'could not be kept in the history' " + told));
}
