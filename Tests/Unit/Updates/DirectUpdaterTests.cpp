#include "Foundation/Crypto/Base64.h"
#include "MRMDirectUpdater/DirectUpdater.h"
#include "MRMUpdatePolicy/ReleaseKey.h"
#include "Platform/Fake/FakeProcessLauncher.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Support/TemporaryFolder.h"
#include "Unit/Updates/SignedFeed.h"

namespace {

using Phase = UpdateStatus::Phase;

constexpr auto aDay = std::chrono::hours(24);

/// An updater that the test plays, and an application that dictates and starts as the test says.
class DirectUpdaterTest : public testing::Test {
 protected:
  DirectUpdaterTest() {
    std::signal(SIGPIPE, SIG_IGN);  // as the application does
    launcher.install(executable, [this](FakeChildSide& side) { play(side); });
  }

  void play(FakeChildSide& side) const {
    const auto& task = side.arguments().front();
    if (task == "feed") {
      side.write(R"({"event":"feed","feed":")" + base64::encoded(bytesOf(feed())) + "\"}\n");
    } else if (task == failing) {
      side.write("{\"event\":\"failed\",\"message\":\"It failed.\"}\n");
    } else {
      side.write("{\"event\":\"done\"}\n");
    }
    (void)side.readLine();
  }

  [[nodiscard]] std::string feed() const {
    return signedFeed(key,
                      R"({"serial": 5, "expires": 99999999999, "releases": [{"version": "2.1", "build": 7,
        "channel": "c", "edition": "e", "architecture": "a", "size": 10, "sha256": ")" +
                          std::string(64, 'a') + R"(", "url": "https://h/f"}]})");
  }
  DirectUpdater& updater() {
    if (!updater_) {
      updater_.emplace(DirectUpdater::Configuration{.road = road,
                                                    .subject = {6, "c", "e", "a", "2"},
                                                    .fingerprint = fingerprint(key.publicKey()),
                                                    .executable = executable,
                                                    .root = "/root",
                                                    .memory = folder.path() / "updates.json",
                                                    .environment = {},
                                                    .arguments = {},
                                                    .mayExecute = {}},
                       DirectUpdater::Ports{
                           .executor = executor,
                           .clock = executor,
                           .launcher = launcher,
                           .files = files,
                           .startsUp = [this](std::filesystem::path program) { return startsUp(program); },
                           .beginInstallation = [this] { return gate.beginInstallation(); },
                           .endInstallation = [this] { gate.endInstallation(); },
                           .restart = [this] { ++restarts; },
                           .circumstances = [this] { return circumstances; },
                           .isIdle = [this] { return isIdle; }});
    }
    return *updater_;
  }
  Task<bool> startsUp(std::filesystem::path program) {
    tried.push_back(program);
    co_return program != broken;
  }

  bool waitFor(Phase phase) {
    return executor.waitUntil([&] { return updater().status().phase == phase; });
  }
  [[nodiscard]] Strings tasks() const {
    Strings names;
    for (const auto& request : launcher.requests()) names.push_back(request.arguments.front());
    return names;
  }

  const std::filesystem::path executable = "/resources/Workers/mrm-updater";
  ed25519::SigningKey key = *ed25519::SigningKey::generate();
  TemporaryFolder folder;
  PosixFileSystem files;
  ManualExecutor executor;
  FakeProcessLauncher launcher;
  UpdateActivityRegister gate;
  UpdateRoad road = UpdateRoad::direct;
  UpdateScheduleFacts circumstances;
  bool isIdle = true;
  int restarts = 0;
  std::string failing;
  std::filesystem::path broken;
  std::vector<std::filesystem::path> tried;
  std::optional<DirectUpdater> updater_;
};

TEST_F(DirectUpdaterTest, AsksNobodyUntilSomebodyAgreed) {
  updater().followSchedule();
  for (int days = 0; days < 60; ++days) executor.advance(aDay);
  updater().install(false);  // what nobody has found
  executor.runUntilIdle();
  EXPECT_TRUE(tasks().empty());
}

TEST_F(DirectUpdaterTest, LooksOnceADayWhileThatIsAgreedToAndInstallsNothing) {
  circumstances.isAgreed = true;
  updater().followSchedule();
  ASSERT_TRUE(waitFor(Phase::available));
  executor.advance(aDay - std::chrono::seconds(2));
  EXPECT_EQ(tasks(), Strings{"feed"});

  // Another start of the application on the same day does not look again.
  updater_.reset();
  updater().followSchedule();
  executor.runUntilIdle();
  EXPECT_EQ(tasks(), Strings{"feed"});
  executor.advance(std::chrono::seconds(4));
  ASSERT_TRUE(waitFor(Phase::available));
  EXPECT_EQ(tasks(), (Strings{"feed", "feed"}));
}

TEST_F(DirectUpdaterTest, InstallsAtTheEndOfADictationAndLetsNoneBegin) {
  updater().check();
  ASSERT_TRUE(waitFor(Phase::available));
  const auto dictation = gate.begin();
  updater().install(false);
  ASSERT_TRUE(waitFor(Phase::waiting));
  executor.advance(std::chrono::minutes(10));
  EXPECT_EQ(tasks(), (Strings{"feed", "download"}));

  gate.finish(*dictation);
  executor.advance(std::chrono::seconds(2));
  EXPECT_FALSE(gate.begin());
  ASSERT_TRUE(waitFor(Phase::installed));
  EXPECT_EQ(tasks(), (Strings{"feed", "download", "unpack", "exchange"}));
  EXPECT_EQ(tried, (std::vector<std::filesystem::path>{"/root/.new/bin/murmel", "/root/current/bin/murmel"}));
  EXPECT_FALSE(gate.begin()) << "its workers are another version's";
  EXPECT_EQ(restarts, 1);
}

TEST_F(DirectUpdaterTest, WaitsForIdleWhereThatWasAskedForAndCanBeCalledOff) {
  isIdle = false;
  updater().check();
  ASSERT_TRUE(waitFor(Phase::available));
  updater().install(true);
  ASSERT_TRUE(waitFor(Phase::waiting));
  executor.advance(std::chrono::hours(1));
  updater().cancel();
  isIdle = true;
  executor.advance(std::chrono::hours(1));
  EXPECT_EQ(updater().status().phase, Phase::available);
  EXPECT_EQ(tasks(), (Strings{"feed", "download"}));
  EXPECT_TRUE(gate.begin());
}

TEST_F(DirectUpdaterTest, GoesBackFromAVersionThatDoesNotStartAndLetsDictationsBegin) {
  const struct {
    const char* name;
    std::string failing;
    std::filesystem::path broken;
    Strings tasks;
  } rows[] = {
      {"no download", "download", {}, {"feed", "download"}},
      {"not unpacked", "unpack", {}, {"feed", "download", "unpack"}},
      {"does not start", {}, "/root/.new/bin/murmel", {"feed", "download", "unpack"}},
      {"not exchanged", "exchange", {}, {"feed", "download", "unpack", "exchange"}},
      {"does not start in its place",
       {},
       "/root/current/bin/murmel",
       {"feed", "download", "unpack", "exchange", "restore"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto before = tasks().size();
    updater_.reset();
    failing = row.failing;
    broken = row.broken;
    updater().check();
    ASSERT_TRUE(waitFor(Phase::available));
    updater().install(false);
    ASSERT_TRUE(waitFor(Phase::failed));
    const auto all = tasks();
    EXPECT_EQ(std::vector(all.begin() + static_cast<std::ptrdiff_t>(before), all.end()), row.tasks);
    EXPECT_FALSE(updater().status().message.empty());
    const auto dictation = gate.begin();
    ASSERT_TRUE(dictation);
    gate.finish(*dictation);
  }
  EXPECT_EQ(restarts, 0);
}

TEST_F(DirectUpdaterTest, TouchesNoPackageOfTheSystem) {
  road = UpdateRoad::systemPackage;
  updater().check();
  ASSERT_TRUE(waitFor(Phase::available));
  updater().install(false);
  executor.runUntilIdle();
  EXPECT_EQ(tasks(), Strings{"feed"});
}

}  // namespace
