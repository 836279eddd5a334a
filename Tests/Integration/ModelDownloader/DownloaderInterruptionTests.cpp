#include "Integration/ModelDownloader/RunningDownloader.h"
#include "Support/Testing.h"

namespace {

namespace fs = std::filesystem;

/// The process is killed in the middle of its work, over and over; each start goes on where the last one
/// stopped.
TEST(DownloaderInterruption, GoesOnAfterBeingKilledAtAnyMoment) {
  constexpr int kills = 50;
  constexpr std::int64_t bytes = 4'000'000;
  ModelHost host;
  const auto first = host.add("first", bytes, 1);
  const auto copy = host.add("copy", bytes, 1, "Other");
  const TemporaryFolder folder;
  const auto store = folder.path() / "Models";
  // Some 100 ms altogether: a kill falls into the start, the transfer, the check or the installation.
  const RunningDownloader::Setting setting{.store = store,
                                           .address = host.address("kills", "slow@400000"),
                                           .certificate = host.certificate(),
                                           .files = {first, copy}};
  std::mt19937 random(20'240'101);
  std::uniform_int_distribution<int> moment(0, 150'000);  // µs
  int whole = 0;
  for (int i = 0; i < kills; ++i) {
    RunningDownloader downloader(setting);
    downloader.download({"first", "copy"});
    // The wait is the random moment itself; nothing is waited for.
    std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
    downloader.kill();
    for (const auto& file : {first, copy}) {
      const auto place = store / file.place();
      if (!fs::exists(place)) continue;
      ASSERT_EQ(contentsOf(place), host.content(file)) << "half a file after kill " << i;
      ++whole;
    }
    // Begin again, so that every kill meets work that is under way.
    if (fs::exists(store / first.place()) && fs::exists(store / copy.place())) fs::remove_all(store);
  }
  RunningDownloader downloader(setting);
  downloader.download({"first", "copy"});
  const auto events = downloader.untilIdle();
  ASSERT_FALSE(events.empty());
  EXPECT_EQ(events.back().event, "idle");
  downloader.close();
  for (const auto& file : {first, copy}) EXPECT_EQ(contentsOf(store / file.place()), host.content(file));
  EXPECT_FALSE(fs::exists(store / ".downloads")) << "something temporary was left";
  EXPECT_GT(whole, 0) << "no kill came late enough: the test proves less than it says";
}

TEST(DownloaderInterruption, FetchesNothingTwiceAcrossRestarts) {
  ModelHost host;
  const auto file = host.add("file", 3'000'000, 1);
  const TemporaryFolder folder;
  const RunningDownloader::Setting setting{.store = folder.path() / "Models",
                                           .address = host.address("restarts", "slow@20000"),
                                           .certificate = host.certificate(),
                                           .files = {file}};
  std::int64_t resumedAt = 0;
  for (int i = 0; i < 3; ++i) {
    RunningDownloader downloader(setting);
    downloader.download({"file"});
    while (const auto event = downloader.next()) {
      ASSERT_EQ(event->event == "installed", false) << "too fast for this test";
      if (event->received > resumedAt) {
        resumedAt = event->received;
        break;
      }
    }
    downloader.kill();
  }
  ASSERT_GT(resumedAt, 0);
  RunningDownloader downloader(setting);
  downloader.download({"file"});
  ASSERT_TRUE(downloader.waitFor("installed"));
  // What was on its way when the process died is lost, but no more: at most what the sockets hold.
  constexpr std::int64_t onTheWay = 3 * 600'000;
  EXPECT_LT(host.statistics("restarts", "slow@20000", file).bytes, file.bytes + onTheWay);
  // One that begins with more than the last one had told of may be killed before it asks.
  EXPECT_GT(host.statistics("restarts", "slow@20000", file).requests, 1);
}

TEST(DownloaderInterruption, EndsWithItsInput) {
  ModelHost host;
  const auto file = host.add("file", 3'000'000, 1);
  const TemporaryFolder folder;
  RunningDownloader downloader({.store = folder.path() / "Models",
                                .address = host.address("input", "stall@1000"),
                                .certificate = host.certificate(),
                                .files = {file}});
  downloader.download({"file"});
  ASSERT_TRUE(downloader.waitFor("progress"));
  downloader.process().closeInput();
  while (downloader.next()) {
  }
  EXPECT_TRUE(downloader.hasEnded());
}

}  // namespace
