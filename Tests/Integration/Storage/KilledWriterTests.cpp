#include "FolderKeyStore.h"
#include "History/HistoryFile.h"
#include "Settings/JsonDefaultsStore.h"
#include "Storage/SecureLocalEnvelope.h"
#include "Storage/SecureLocalFile.h"
#include "Support/Forks.h"
#include "Support/StepFileSystem.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

constexpr int moreStepsThanAnyOperationHas = 400;

/// What a child process works with: its files and keys end it at a chosen step.
struct Victim {
  StepFileSystem files;
  FolderKeyStore keys;

  Victim(const std::filesystem::path& keyFolder, int deadlyStep)
      : keys(keyFolder, [this] { step(); }), stepsLeft_(deadlyStep) {
    files.limitTransfers(48);  // a file is written in several steps
    files.before([this](int, std::string_view) -> std::optional<int> {
      step();
      return std::nullopt;
    });
  }

 private:
  void step() {
    if (stepsLeft_-- == 0) ::kill(::getpid(), SIGKILL);
  }
  int stepsLeft_;
};

class KilledWriterTest : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  std::filesystem::path data = folder.path() / "data";
  std::filesystem::path keyFolder = folder.path() / "keys";
  std::filesystem::path path = data / "test.sealed";
  PosixFileSystem files;

  /// Runs `work` in a process that is killed at each step in turn, each time after `prepare` and before
  /// `check`, until it survives. Gives the number of steps.
  int walk(const std::function<void()>& prepare, const std::function<void(Victim&)>& work,
           const std::function<void()>& check) {
    for (int deadlyStep = 0; deadlyStep < moreStepsThanAnyOperationHas; ++deadlyStep) {
      SCOPED_TRACE("killed at step " + std::to_string(deadlyStep));
      std::filesystem::remove_all(data);
      std::filesystem::remove_all(keyFolder);
      prepare();
      const int status = inAFork([&] {
        work(*std::make_unique<Victim>(keyFolder, deadlyStep));
        return 0;
      });
      check();
      EXPECT_TRUE(status == 0 || status == -SIGKILL) << status;
      if (status != -SIGKILL || ::testing::Test::HasFailure()) return deadlyStep;
    }
    ADD_FAILURE() << "no end";
    return 0;
  }

  SecureLocalFile file(FileSystem& through, LocalEncryptionKeyStore& keys) {
    return {through, keys, path, {data / "legacy.txt"}};
  }
  void write(const std::string& text) {
    FolderKeyStore keys(keyFolder);
    ASSERT_TRUE(file(files, keys).write(bytesOf(text)));
  }
  /// Reads as the next start does.
  std::string read() {
    FolderKeyStore keys(keyFolder);
    const auto plaintext = file(files, keys).read();
    if (!plaintext) return plaintext.error().description();
    return *plaintext ? textOf((*plaintext)->reveal()) : "(nothing)";
  }
  void expectTidy() {
    for (const auto& name : namesIn(data))
      EXPECT_TRUE(contains(Strings{"test.sealed", "test.sealed.lock", "legacy.txt"}, {name}));
    const auto keys = FolderKeyStore(keyFolder).identifiers();
    if (std::filesystem::exists(path)) {
      const auto envelope = SecureLocalEnvelope::decode(bytesOf(contentsOf(path)));
      ASSERT_TRUE(envelope);
      EXPECT_EQ(keys, std::set<std::string>{envelope->keyID});
    } else {
      EXPECT_EQ(keys, std::set<std::string>{});
    }
  }
};

}  // namespace

TEST_F(KilledWriterTest, AnUpdateLeavesTheOldOrTheNewFileWithItsKeyAlone) {
  int old = 0;
  int fresh = 0;
  const int steps = walk([&] { write("the old words"); },
                         [&](Victim& victim) {
                           const auto change = [](const auto&) -> SecureResult<std::optional<SecretBytes>> {
                             return SecretBytes(bytesOf("the new words"));
                           };
                           if (!file(victim.files, victim.keys).update(change)) ::_exit(1);
                         },
                         [&] {
                           const auto kept = read();
                           EXPECT_TRUE(contains(Strings{"the old words", "the new words"}, {kept}));
                           ++(kept == "the old words" ? old : fresh);
                           expectTidy();
                           write("and life goes on");
                           EXPECT_EQ(read(), "and life goes on");
                           expectTidy();
                         });
  EXPECT_GT(steps, 25);
  EXPECT_GT(old, 10);
  EXPECT_GT(fresh, 3);
}

TEST_F(KilledWriterTest, TheFirstWriteLeavesNothingOrTheFile) {
  walk([] {},
       [&](Victim& victim) {
         if (!file(victim.files, victim.keys).write(bytesOf("the first words"))) ::_exit(1);
       },
       [&] {
         if (!std::filesystem::exists(data)) return;
         EXPECT_TRUE(contains(Strings{"(nothing)", "the first words"}, {read()}));
         expectTidy();
       });
}

TEST_F(KilledWriterTest, AWriteThatTidiesUpAfterAnotherCrashCanCrashToo) {
  walk(
      [&] {
        write("the old words");
        inAFork([&] {
          // Dies after the new key was made, before the file is in place.
          StepFileSystem dying;
          FolderKeyStore keys(keyFolder);
          int renames = 0;  // of the list of keys, then of the file
          dying.before([&renames](int, std::string_view call) -> std::optional<int> {
            if (call == "rename" && ++renames == 2) ::kill(::getpid(), SIGKILL);
            return std::nullopt;
          });
          (void)file(dying, keys).write(bytesOf("never seen"));
          return 0;
        });
        ASSERT_EQ(FolderKeyStore(keyFolder).identifiers().size(), 2U);
      },
      [&](Victim& victim) {
        if (!file(victim.files, victim.keys).write(bytesOf("the new words"))) ::_exit(1);
      },
      [&] {
        EXPECT_TRUE(contains(Strings{"the old words", "the new words"}, {read()}));
        expectTidy();
      });
}

TEST_F(KilledWriterTest, ADeletionIsEitherNotBegunOrFinishedByTheNextStart) {
  walk([&] { write("private words"); },
       [&](Victim& victim) {
         if (!file(victim.files, victim.keys).deleteCryptographically()) ::_exit(1);
       },
       [&] {
         EXPECT_TRUE(contains(Strings{"private words", "(nothing)"}, {read()}));
         expectTidy();
       });
}

TEST_F(KilledWriterTest, AMigrationNeverLosesThePlainTextBeforeItIsSealed) {
  walk(
      [&] {
        std::filesystem::create_directories(data);
        writeFile(data / "legacy.txt", "words from before");
      },
      [&](Victim& victim) {
        if (!file(victim.files, victim.keys).read()) ::_exit(1);
      },
      [&] {
        EXPECT_EQ(read(), "words from before");
        EXPECT_FALSE(std::filesystem::exists(data / "legacy.txt"));
        expectTidy();
      });
}

TEST_F(KilledWriterTest, SettingADamagedHistoryAsideLosesNeitherTheOldNorTheNew) {
  const auto sealed = data / "history.sealed";
  std::string damaged;
  const auto entry = [](const char* text) {
    HistoryEntry made;
    made.id = Uuid::random();
    made.text = SpokenText(text);
    return made;
  };
  walk(
      [&] {
        FolderKeyStore keys(keyFolder);
        HistoryChanges changes;
        changes.added.push_back(entry("precious"));
        (void)HistoryFile(historyFile(files, keys, data)).change(changes);
        damaged = contentsOf(sealed);
        damaged.back() = '!';
        writeFile(sealed, damaged);
      },
      [&](Victim& victim) {
        HistoryChanges changes;
        changes.added.push_back(entry("new"));
        if (!HistoryFile(historyFile(victim.files, victim.keys, data)).change(changes)) ::_exit(1);
      },
      [&] {
        const bool aside = std::filesystem::exists(data / "history.sealed.damaged");
        EXPECT_EQ(contentsOf(aside ? data / "history.sealed.damaged" : sealed), damaged);
      });
}

TEST_F(KilledWriterTest, ASettingIsChangedOrNotAndTheOthersStay) {
  const auto defaults = defaultsFile(folder.path());
  int changed = 0;
  const int steps = walk(
      [&] {
        std::filesystem::remove_all(defaults.parent_path());
        JsonDefaultsStore store(files, defaults);
        store.set("kept", std::string("as it was"));
        store.set("changing", std::int64_t{1});
      },
      [&](Victim& victim) { JsonDefaultsStore(victim.files, defaults).set("changing", std::int64_t{2}); },
      [&] {
        JsonDefaultsStore store(files, defaults);
        EXPECT_EQ(store.messages(), Strings{});
        EXPECT_EQ(store.get<std::string>("kept"), "as it was");
        const auto value = store.get<std::int64_t>("changing");
        EXPECT_TRUE(value == 1 || value == 2);
        changed += value == 2 ? 1 : 0;
        store.set("changing", std::int64_t{3});
        const auto names = namesIn(defaults.parent_path());
        EXPECT_TRUE(contains({names.begin(), names.end()}, {"defaults.json", "defaults.json.lock"}));
      });
  EXPECT_GT(changed, 0);
  EXPECT_LT(changed, steps);
}
