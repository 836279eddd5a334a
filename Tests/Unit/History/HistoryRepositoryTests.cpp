#include "Foundation/Async/SerialQueue.h"
#include "History/HistoryExpiry.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Storage/KeychainEncryptionKeyStore.h"
#include "Support/FileBytes.h"
#include "Support/StepFileSystem.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

const std::string service = "app.murmel.Test.local-storage.history";
constexpr auto now = std::chrono::sys_days(std::chrono::year(2026) / 5 / 17) + std::chrono::hours(12);

/// Waits for the file after everything, as time does.
class SettledHistory final : public HistoryRepository {
 public:
  SettledHistory(ManualExecutor& executor, SerialQueue& queue, SecureLocalFile storage)
      : HistoryRepository(executor, queue, std::move(storage)), executor_(executor) {
    settle();
  }
  void add(HistoryEntry entry) override {
    HistoryRepository::add(std::move(entry));
    settle();
  }
  void prune(HistoryRetention retention, WallTime moment) {
    HistoryRepository::prune(retention, moment);
    settle();
  }
  void remove(std::set<Uuid> ids) {
    HistoryRepository::remove(std::move(ids));
    settle();
  }
  void deleteAll() {
    HistoryRepository::deleteAll();
    settle();
  }
  void reload() {
    HistoryRepository::reload();
    settle();
  }

 private:
  void settle() {
    EXPECT_TRUE(executor_.waitUntil([this] { return isSettled(); }));
  }
  ManualExecutor& executor_;
};

class HistoryRepositoryTest : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  std::filesystem::path data = folder.path() / "MRM";
  std::filesystem::path path = data / "history.sealed";
  StepFileSystem files;
  FakeSecretStore secrets;
  KeychainEncryptionKeyStore keys{secrets, service};

  ManualExecutor executor;
  SerialQueue queue{executor, "history"};

  SettledHistory open() { return {executor, queue, historyFile(files, keys, data)}; }

  static HistoryEntry entry(const std::string& text, double secondsBeforeNow = 0) {
    HistoryEntry made;
    made.id = Uuid::random();
    made.createdAt = historyDate(now) - secondsBeforeNow;
    made.text = SpokenText(text);
    made.providerID = "test";
    made.language = "English";
    return made;
  }
  static Strings texts(const HistoryRepository& history) {
    Strings all;
    for (const auto& each : history.entries()) all.push_back(each.text.reveal());
    return all;
  }
};

}  // namespace

TEST_F(HistoryRepositoryTest, KeepsEntriesNewestFirstAcrossStarts) {
  {
    auto history = open();
    EXPECT_EQ(history.storageStatus(), SecureStorageStatus::available);
    history.add(entry("one", 20));
    history.add(entry("two", 10));
  }
  auto history = open();
  EXPECT_EQ(texts(history), (Strings{"two", "one"}));
  history.remove({history.entries().back().id});
  EXPECT_EQ(texts(open()), Strings{"two"});
  EXPECT_EQ(secrets.accounts(service).size(), 1U);
}

TEST_F(HistoryRepositoryTest, PrunesWhatIsOlderThanTheRetentionAndWritesOnlyThen) {
  const struct {
    HistoryRetention retention;
    double age;
  } cases[] = {
      {HistoryRetention::fiveMinutes, 300},       {HistoryRetention::oneDay, 86'400},
      {HistoryRetention::oneWeek, 604'800},       {HistoryRetention::oneMonth, 2'592'000},
      {HistoryRetention::threeMonths, 7'776'000},
  };
  for (const auto& [retention, age] : cases) {
    auto history = open();
    history.deleteAll();
    history.add(entry("too old", age + 1));
    history.add(entry("at the limit", age));
    history.add(entry("young", age - 1));
    history.prune(HistoryRetention::forever, now);
    EXPECT_EQ(history.entries().size(), 3U);
    history.prune(retention, now);
    EXPECT_EQ(texts(history), (Strings{"young", "at the limit"}));
    EXPECT_EQ(texts(open()), (Strings{"young", "at the limit"}));
    files.before({});
    history.prune(retention, now);
    EXPECT_EQ(files.steps(), 0);
  }
}

TEST_F(HistoryRepositoryTest, MergesWhatItCouldNotReadAtTheStart) {
  open().add(entry("stored", 100));
  secrets.setLocked(true);
  auto history = open();
  EXPECT_EQ(history.storageStatus(), SecureStorageStatus::unavailable);
  EXPECT_EQ(history.entries().size(), 0U);
  const auto sealed = contentsOf(path);
  history.add(entry("while locked", 50));
  EXPECT_EQ(contentsOf(path), sealed);
  EXPECT_EQ(texts(history), Strings{"while locked"});
  EXPECT_EQ(history.storageStatus(), SecureStorageStatus::unavailable);
  secrets.setLocked(false);
  history.add(entry("long ago", 500));
  EXPECT_EQ(history.storageStatus(), SecureStorageStatus::available);
  EXPECT_EQ(texts(history), (Strings{"while locked", "stored", "long ago"}));
  EXPECT_EQ(open().entries(), history.entries());
}

TEST_F(HistoryRepositoryTest, MergesAStoredEntryOnceAndKeepsTheOrderOfTies) {
  auto first = open();
  first.add(entry("stored a"));
  first.add(entry("stored b"));
  secrets.setLocked(true);
  auto history = open();
  history.add(first.entries().back());
  history.add(entry("new"));
  secrets.setLocked(false);
  history.reload();
  EXPECT_EQ(texts(history), (Strings{"new", "stored a", "stored b"}));
}

TEST_F(HistoryRepositoryTest, SetsADamagedFileAsideBeforeItWritesANewOne) {
  for (const bool undecodable : {false, true}) {
    std::filesystem::remove_all(data);
    std::string damaged;
    if (undecodable) {
      ASSERT_TRUE(historyFile(files, keys, data).write(bytesOf("{\"not\":\"a list\"}")));
      damaged = contentsOf(path);
    } else {
      open().add(entry("precious"));
      damaged = contentsOf(path);
      damaged[damaged.size() / 2] ^= 1;
      writeFile(path, damaged);
    }
    auto history = open();
    EXPECT_EQ(history.storageStatus(), SecureStorageStatus::unavailable);
    EXPECT_EQ(contentsOf(path), damaged) << "reading changes nothing";
    history.add(entry("life goes on"));
    EXPECT_EQ(history.storageStatus(), SecureStorageStatus::available);
    EXPECT_EQ(contentsOf(data / "history.sealed.damaged"), damaged);
    EXPECT_EQ(texts(open()), Strings{"life goes on"});
  }
}

TEST_F(HistoryRepositoryTest, EveryFailingStepKeepsTheEntriesInMemoryAndTheFileAsItWas) {
  open().add(entry("old"));
  auto counted = open();
  files.before({});
  counted.add(entry("counted"));
  const int steps = files.steps();
  for (int failing = 0; failing < steps; ++failing) {
    std::filesystem::remove_all(data);
    open().add(entry("old"));
    auto history = open();
    files.before([&](int index, std::string_view) -> std::optional<int> {
      if (index == failing) return ENOSPC;
      return std::nullopt;
    });
    history.add(entry("new"));
    files.failNever();
    SCOPED_TRACE(failing);
    EXPECT_EQ(texts(history), (Strings{"new", "old"}));
    history.reload();
    EXPECT_EQ(history.storageStatus(), SecureStorageStatus::available);
    EXPECT_EQ(texts(open()), (Strings{"new", "old"}));
  }
}

TEST_F(HistoryRepositoryTest, DeletesEverythingForGood) {
  auto history = open();
  history.add(entry("private"));
  const auto copy = contentsOf(path);
  secrets.setLocked(true);
  history.deleteAll();
  EXPECT_EQ(history.entries().size(), 0U);
  EXPECT_EQ(history.storageStatus(), SecureStorageStatus::unavailable);
  secrets.setLocked(false);
  executor.advance(HistoryRepository::retryInterval);
  ASSERT_TRUE(executor.waitUntil([&] { return history.isSettled(); }));
  EXPECT_EQ(history.storageStatus(), SecureStorageStatus::available) << "done as soon as it can be";
  EXPECT_FALSE(std::filesystem::exists(path));
  writeFile(path, copy);
  EXPECT_EQ(open().storageStatus(), SecureStorageStatus::unavailable);
  EXPECT_EQ(open().entries().size(), 0U);
}

TEST_F(HistoryRepositoryTest, TakesOverThePlainListOfAnEarlierVersion) {
  std::filesystem::create_directories(data);
  writeFile(data / "history.json",
            R"([{"id":"A0B1C2D3-E4F5-4678-9ABC-DEF012345678","createdAt":1,"text":"from before",)"
            R"("providerID":"p","language":"en"}])");
  EXPECT_EQ(texts(open()), Strings{"from before"});
  EXPECT_FALSE(std::filesystem::exists(data / "history.json"));
  EXPECT_EQ(texts(open()), Strings{"from before"});
}

TEST_F(HistoryRepositoryTest, TellsObserversBeforeAndAfter) {
  auto history = open();
  Strings seen;
  const auto before = history.willChange().subscribe(
      [&] { seen.push_back("will, with " + std::to_string(history.entries().size())); });
  const auto after = history.didChange().subscribe(
      [&] { seen.push_back("did, with " + std::to_string(history.entries().size())); });
  history.add(entry("one"));
  EXPECT_EQ(seen, (Strings{"will, with 0", "did, with 1"}));
  secrets.setLocked(true);
  seen.clear();
  history.reload();
  EXPECT_EQ(seen.size(), 2U) << "the status changed";
}

TEST_F(HistoryRepositoryTest, WhatIsAddedBeforeTheLoadEndsOrTheApplicationDoesIsKept) {
  open().add(entry("stored", 400));
  {
    HistoryRepository history(executor, queue, historyFile(files, keys, data));
    EXPECT_EQ(history.entries().size(), 0U) << "nothing has been waited for";
    history.prune(HistoryRetention::fiveMinutes, now);
    history.add(entry("early"));
    ASSERT_TRUE(executor.waitUntil([&] { return history.isSettled(); }));
    EXPECT_EQ(history.entries().size(), 1U) << "the stored one was too old";
    history.add(entry("at the end"));
  }
  EXPECT_EQ(texts(open()), (Strings{"at the end", "early"}));
}

TEST_F(HistoryRepositoryTest, NoEntryOutlivesAWrongClockOrIsDeletedByOne) {
  struct : Clock {
    ManualExecutor* time;
    Duration wrong{};
    Instant now() const override { return time->now(); }
    WallTime wallNow() const override { return ::now + sinceBoot() + wrong; }
    Duration sinceBoot() const override { return time->sinceBoot(); }
  } clock;
  clock.time = &executor;
  auto retention = HistoryRetention::fiveMinutes;
  auto history = open();
  HistoryExpiry expiry(executor, clock, history, [&] { return retention; });
  const auto after = [&](int seconds) {
    executor.advance(std::chrono::seconds(seconds));
    return texts(history);
  };
  history.add(entry("a year ahead", -31'536'000));
  EXPECT_EQ(after(299).size(), 1U);
  EXPECT_EQ(after(2).size(), 0U) << "was seen for five minutes";
  history.add(entry("an hour ahead", -3600));
  history.add(entry("made after it", -101));
  EXPECT_EQ(after(99).size(), 2U);
  EXPECT_EQ(after(2).size(), 0U);

  retention = HistoryRetention::oneDay;
  history.add(entry("kept", -400));
  clock.wrong = std::chrono::days(400);
  EXPECT_EQ(after(599).size(), 1U) << "somebody may put the clock right";
  clock.wrong = {};
  EXPECT_EQ(after(3000).size(), 1U);
  clock.wrong = std::chrono::days(2);
  EXPECT_EQ(after(1300).size(), 0U) << "the time is the true one";
}
