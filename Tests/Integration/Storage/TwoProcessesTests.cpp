#include "FolderKeyStore.h"
#include "History/HistoryFile.h"
#include "Platform/Linux/Files/MachineLock.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Settings/JsonDefaultsStore.h"
#include "Storage/SecureLocalFile.h"
#include "Support/Forks.h"
#include "Support/Pipe.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <seccomp.h>

namespace {

/// Runs `work` in several processes at once and tells whether all of them were content.
template <class Work>
bool inProcesses(int count, Work work) {
  std::vector<pid_t> children;
  for (int number = 0; number < count; ++number) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(work(number) ? 0 : 1);
    children.push_back(child);
  }
  bool content = true;
  for (const pid_t child : children) {
    int status = 0;
    ::waitpid(child, &status, 0);
    content = content && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
  return content;
}

/// For this process, what a network mount without its lock service answers.
bool takeLocksAway() {
  const auto filter = seccomp_init(SCMP_ACT_ALLOW);
  return seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOLCK), SCMP_SYS(flock), 0) == 0 &&
         seccomp_load(filter) == 0;
}

class TwoWriters : public testing::TestWithParam<bool> {};

}  // namespace

TEST(MachineLock, StandsInForTheLockOfAFolder) {
  const TemporaryFolder folder;
  EXPECT_TRUE(succeedsInAFork([&] {
    const auto own = machineLock::takeWhereNeeded(folder.path());
    if (!own || *own || !takeLocksAway()) return false;
    const auto instead = machineLock::takeWhereNeeded(folder.path());
    const auto second = machineLock::takeWhereNeeded(folder.path());
    return instead && *instead && !second && second.error() == EWOULDBLOCK;
  }));
}

TEST(PosixFileSystem, AsksTheDiskWhichKnowsNoPipe) {
  const Pipe pipe;
  EXPECT_EQ(PosixFileSystem().synchronize(pipe.readEnd.get()), FileResult<void>(std::unexpected(EINVAL)));
}

INSTANTIATE_TEST_SUITE_P(FileSystemWithoutLocks, TwoWriters, testing::Bool());

TEST_P(TwoWriters, DoNotLoseEachOthersSettings) {
  constexpr int processes = 3;
  constexpr int changes = 20;
  const TemporaryFolder folder;
  const auto file = defaultsFile(folder.path());
  PosixFileSystem files;
  EXPECT_TRUE(inProcesses(processes, [&](int number) {
    if (GetParam() && !takeLocksAway()) return false;
    JsonDefaultsStore store(files, file);
    for (int change = 0; change < changes; ++change) {
      const auto key = std::to_string(number) + "." + std::to_string(change);
      store.set(key, std::int64_t{change});
      // Where the disk is slow the others may have the lock for longer than a setting waits for it. It says
      // so then.
      for (int tries = 0; tries < 20 && !store.isStored(); ++tries) store.set(key, std::int64_t{change});
    }
    return store.isStored();
  }));
  const JsonDefaultsStore store(files, file);
  for (int number = 0; number < processes; ++number) {
    for (int change = 0; change < changes; ++change) {
      EXPECT_EQ(store.get<std::int64_t>(std::to_string(number) + "." + std::to_string(change)), change);
    }
  }
}

TEST(TwoProcesses, LoseNoEntryOfTheHistoryAndBringNoneBack) {
  constexpr int processes = 8;
  constexpr int dictations = 25;
  const TemporaryFolder folder;
  PosixFileSystem files;
  FolderKeyStore keys(folder.path() / "keys");
  HistoryFile history(historyFile(files, keys, folder.path()));
  HistoryEntry deleted;
  deleted.id = Uuid::random();
  ASSERT_TRUE(history.change({.added = {deleted}}));
  EXPECT_TRUE(inProcesses(processes, [&](int number) {
    for (int dictation = 0; dictation < dictations; ++dictation) {
      HistoryEntry entry;
      entry.id = Uuid::random();
      if (!history.change({.added = {entry}})) return false;
      if (number == 0 && dictation == 0 && !history.change({.removed = {deleted.id}})) return false;
    }
    return true;
  }));
  const auto entries = history.load();
  ASSERT_TRUE(entries);
  EXPECT_EQ(entries->size(), processes * dictations);
  EXPECT_EQ(std::ranges::count(*entries, deleted.id, &HistoryEntry::id), 0);
  EXPECT_EQ(keys.identifiers().size(), 1U);
}

TEST(TwoProcesses, ReadersNeverSeeASealedFileWithoutItsKey) {
  constexpr int rounds = 60;
  const TemporaryFolder folder;
  const auto path = folder.path() / "test.sealed";
  PosixFileSystem files;
  FolderKeyStore keys(folder.path() / "keys");
  SecureLocalFile file(files, keys, path);
  ASSERT_TRUE(file.write(bytesOf("0")));
  EXPECT_TRUE(inProcesses(3, [&](int number) {
    for (int round = 0; round < rounds; ++round) {
      if (number == 0 && !file.write(bytesOf(std::to_string(round)))) return false;
      if (number != 0) {
        const auto plaintext = file.read();
        if (!plaintext || !*plaintext) return false;
      }
    }
    return true;
  }));
  EXPECT_EQ(keys.identifiers().size(), 1U);
}
