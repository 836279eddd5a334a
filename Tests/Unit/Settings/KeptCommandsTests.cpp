#include "History/HistoryCommand.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Settings/SettingsCommand.h"
#include "Settings/SettingsKeys.h"
#include "Settings/VocabularyCommand.h"
#include "Storage/KeychainEncryptionKeyStore.h"
#include "Support/FileBytes.h"
#include "Support/StepFileSystem.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <sstream>

namespace {

class KeptCommands : public ::testing::Test {
 protected:
  CommandStreams streams(std::istringstream& input) {
    return {[this](auto text) { output += text; }, [this](auto text) { complaint += text; }, input};
  }
  int vocabulary(const Strings& arguments, const std::string& typed = {}) {
    clear();
    std::istringstream input(typed);
    return VocabularyCommand(files, {files, keys, folder.path() / "words"}, streams(input),
                             [this] { return secrets.unlock(); })
        .run(arguments);
  }
  int settings(const Strings& arguments) {
    clear();
    std::istringstream input;
    JsonDefaultsStore store(files, folder.path() / "defaults.json");
    return SettingsCommand(store, MRMDistributionChannel::direct, streams(input)).run(arguments);
  }
  int history(const Strings& arguments, const std::string& typed = {}) {
    clear();
    std::istringstream input(typed);
    const auto copy = [this](const SpokenText& text) -> std::expected<void, std::string> {
      copied = text.reveal();
      return {};
    };
    return HistoryCommand(HistoryFile({files, keys, folder.path() / "history"}), streams(input), copy)
        .run(arguments);
  }
  void clear() {
    output.clear();
    complaint.clear();
  }

  TemporaryFolder folder;
  StepFileSystem files;
  FakeSecretStore secrets;
  KeychainEncryptionKeyStore keys{secrets, "app.murmel.Test"};
  std::string output, complaint, copied;
};

}  // namespace

TEST_F(KeptCommands, TheVocabularyTakesWordsFromItsInputAlone) {
  EXPECT_EQ(vocabulary({"add"}, "postgresql = PostgreSQL\r\nmurmel = Murmel\n"), 0);
  EXPECT_EQ(vocabulary({"add"}, "\xEF\xBB\xBFmurmel = MURMEL\n"), 0) << "as Windows writes it";
  EXPECT_EQ(vocabulary({"import", "-"}), 1) << "of a program that failed, say";
  EXPECT_EQ(vocabulary({"import", folder.path()}), 1);
  EXPECT_EQ(vocabulary({"list"}), 0);
  EXPECT_EQ(output, "postgresql = PostgreSQL\nmurmel = MURMEL\n");
  EXPECT_EQ(vocabulary({"add"}, "good = Good\n\nno sign\n"), 1);
  EXPECT_TRUE(contains(complaint, "Line 3"));
  EXPECT_EQ(vocabulary({"add", "a = b", "c = d"}), 2) << "words in arguments";
  EXPECT_EQ(vocabulary({"remove"}, "murmel\n"), 0);
  EXPECT_EQ(vocabulary({"list"}), 0);
  EXPECT_EQ(output, "postgresql = PostgreSQL\n");
  const auto copy = folder.path() / "exported";
  files.failAlways("write", ENOSPC);
  EXPECT_EQ(vocabulary({"export", copy}), 1);
  files.failNever();
  EXPECT_EQ(vocabulary({"export", copy}), 0) << "half a file is not left in the way";
  EXPECT_EQ(contentsOf(copy), "postgresql = PostgreSQL\n");
  EXPECT_EQ(vocabulary({"export", copy}), 1) << "nothing is written over";
  secrets.setLocked(true);
  EXPECT_EQ(vocabulary({"list"}), 1);
  EXPECT_EQ(complaint, "The vocabulary cannot be opened: The key ring is locked.");
  EXPECT_EQ(vocabulary({"retry"}), 0);
  EXPECT_EQ(output, "The vocabulary can be read: 1 entries.\n");
}

TEST_F(KeptCommands, SettingsAreNamedCheckedAndNeverThoseOfMigrations) {
  EXPECT_EQ(settings({"set", "historyRetention", "oneWeek"}), 0);
  EXPECT_EQ(settings({"set", "selectedLanguages", "de, uk"}), 0);
  EXPECT_EQ(settings({"set", "settings.shortcutConfiguration", "optionSpace"}), 0);
  EXPECT_EQ(settings({"set", "smartFormatting", "on"}), 0);
  const std::pair<const char*, const char*> values[] = {{"historyRetention", "oneWeek\n"},
                                                        {"selectedLanguages", "de,uk\n"},
                                                        {"shortcutConfiguration", "optionSpace\n"},
                                                        {"smartFormatting", "true\n"}};
  for (const auto& [name, value] : values) {
    EXPECT_EQ(settings({"get", name}), 0);
    EXPECT_EQ(output, value);
  }
  JsonDefaultsStore store(files, folder.path() / "defaults.json");
  EXPECT_EQ(store.get<bool>(settingsKey::smartLocalQwenMigration), true) << "else the start undoes it";
  EXPECT_EQ(settings({"set", "historyRetention", "never"}), 2);
  EXPECT_TRUE(contains(complaint, "forever, fiveMinutes"));
  EXPECT_EQ(settings({"set", "settings.smartLocalQwenMigration", "false"}), 2);
  EXPECT_EQ(settings({"reset", "historyRetention"}), 0);
  EXPECT_EQ(settings({"list"}), 0);
  EXPECT_TRUE(contains(output, "forever"));
  EXPECT_FALSE(contains(output, "igration"));

  // As a version long ago left them.
  const auto old = [&](const char* name) {
    EXPECT_EQ(settings({"get", name}), 0);
    return std::exchange(output, {});
  };
  store.remove(settingsKey::shortcutConfiguration);
  store.set(settingsKey::legacyShortcut, std::string("controlKey"));
  EXPECT_EQ(old("shortcutConfiguration"), "controlKey\n");
  EXPECT_EQ(settings({"reset", "shortcutConfiguration"}), 0);
  EXPECT_EQ(old("shortcutConfiguration"), "functionKey\n");
  store.remove(settingsKey::smartLocalQwenMigration);
  EXPECT_EQ(old("smartFormatting"), "false\n");
}

TEST_F(KeptCommands, TheHistoryIsShownCopiedAndDeletedByNumber) {
  HistoryChanges changes;
  for (const auto* text : {"newer words", "older words"}) {
    changes.added.emplace_back().text = SpokenText(text);
    changes.added.back().id = Uuid::random();
  }
  ASSERT_TRUE(HistoryFile({files, keys, folder.path() / "history"}).change(changes));
  EXPECT_EQ(history({"show", "2"}), 0);
  EXPECT_EQ(output, "older words\n");
  EXPECT_EQ(history({"copy", "1"}), 0);
  EXPECT_EQ(copied, "newer words");
  EXPECT_EQ(history({"delete", "1"}), 0);
  EXPECT_EQ(history({"list", "--json"}), 0);
  EXPECT_TRUE(contains(output, "older words"));
  EXPECT_FALSE(contains(output, "newer words"));
  for (const auto* number : {"0", "2", "-1", "x"}) EXPECT_EQ(history({"show", number}), 1);
  EXPECT_EQ(history({"clear"}, "no\n"), 1);
  EXPECT_EQ(history({"clear"}, "yes\n"), 0);
  EXPECT_EQ(history({"list"}), 0);
  EXPECT_EQ(output, "The history is empty.\n");
}
