#include "Support/Forks.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"
#include "Workers/Common/Isolation.h"

#include <linux/landlock.h>
#include <sys/socket.h>
#include <sys/syscall.h>

namespace {

/// The step, counted from 1, at which the first of `attempts` was not refused; 0 when all were.
int firstThatIsAllowed(std::initializer_list<std::function<bool()>> attempts) {
  int step = 0;
  for (const auto& attempt : attempts) {
    ++step;
    if (attempt()) return step;
  }
  return 0;
}

bool kernelHasLandlock() {
  return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) >= 1;
}

}  // namespace

TEST(Isolation, LeavesTheModelReadableAndThreadsPossible) {
  const TemporaryFolder folder;
  std::ofstream(folder.path() / "model") << "x";
  EXPECT_EQ(inAFork([&] {
              if (!worker::isolate(folder.path())) return 100;
              if (::open((folder.path() / "model").c_str(), O_RDONLY) < 0) return 1;
              if (!worker::closeDoors()) return 2;
              bool ran = false;
              std::thread([&] { ran = true; }).join();
              return ran ? 0 : 3;
            }),
            0);
}

TEST(Isolation, HidesEveryOtherFileWhereTheKernelCan) {
  if (!kernelHasLandlock()) GTEST_SKIP() << "no Landlock here";
  const TemporaryFolder folder;
  EXPECT_EQ(inAFork([&] {
              if (!worker::isolate(folder.path())) return 100;
              return firstThatIsAllowed({
                  [] { return ::open("/etc/passwd", O_RDONLY) >= 0; },
                  [&] { return ::open((folder.path() / "new").c_str(), O_WRONLY | O_CREAT, 0600) >= 0; },
                  [&] { return ::open((folder.path() / "../new").c_str(), O_WRONLY | O_CREAT, 0600) >= 0; },
              });
            }),
            0);
}

TEST(Isolation, ClosesTheLastDoors) {
  const TemporaryFolder folder;
  std::ofstream(folder.path() / "model") << "x";
  EXPECT_EQ(inAFork([&] {
              if (!worker::isolate(folder.path()) || !worker::closeDoors()) return 100;
              return firstThatIsAllowed({
                  [&] { return ::open((folder.path() / "model").c_str(), O_RDONLY) >= 0; },
                  [] { return ::dup(0) >= 0; },
                  [] {
                    int ends[2];
                    return ::pipe(ends) == 0;
                  },
              });
            }),
            0);
}

TEST(Isolation, IsNotClaimedWithoutBeingThere) {
  EXPECT_EQ(inAFork([] { return worker::isolate("/nonexistent") ? 1 : 0; }), 0);
}
