#include "DictationDesk.h"
#include "History/HistoryFile.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Storage/KeychainEncryptionKeyStore.h"

namespace murmel::test {

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

}  // namespace murmel::test
