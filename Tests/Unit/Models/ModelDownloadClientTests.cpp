#include "Models/DownloadRuntimePriority.h"
#include "Models/ModelDownloadClient.h"
#include "Platform/Fake/FakeProcessLauncher.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <mutex>

namespace murmel {
namespace {

using State = ModelDownloadStatus::State;
constexpr auto required = MRMModelDownloadImportance::required;
constexpr auto optional = MRMModelDownloadImportance::optional;

/// A downloader that the test plays: each start runs the next script.
class DownloadClient : public testing::Test {
 protected:
  using Script = std::function<void(FakeChildSide&)>;

  DownloadClient() {
    std::signal(SIGPIPE, SIG_IGN);  // as the application does
    launcher.install(executable, [this](FakeChildSide& side) {
      const auto start = starts++;
      if (start < scripts.size()) scripts[start](side);
    });
    changes = client.onChange([this](const auto& identifier, const auto& status) {
      told.push_back(identifier + " " + std::to_string(static_cast<int>(status.state)));
    });
  }
  /// Says one event.
  static std::string line(const std::string& event, const std::string& rest = {}) {
    return R"({"mrm_downloader_protocol":1,"event":")" + event + "\"" + (rest.empty() ? "" : "," + rest) +
           "}\n";
  }
  static void say(FakeChildSide& side, const std::string& event, const std::string& rest = {}) {
    side.write(line(event, rest));
  }
  /// The next command, kept for the test; false at the end of the input.
  bool hear(FakeChildSide& side) {
    auto line = side.readLine();
    if (!line) return false;
    const std::lock_guard lock(mutex);
    heard.push_back(*line);
    return true;
  }
  std::size_t heardCount() {
    const std::lock_guard lock(mutex);
    return heard.size();
  }
  bool waitForState(const std::string& identifier, State state) {
    return executor.waitUntil([&] {
      const auto status = client.status(identifier);
      return status && status->state == state;
    });
  }

  const std::filesystem::path executable = "/resources/Workers/mrm-model-downloader";
  TemporaryFolder store;
  ManualExecutor executor;
  std::vector<Script> scripts;
  std::atomic<std::size_t> starts = 0;
  std::mutex mutex;
  Strings heard;
  bool isAllowed = true;
  FakeProcessLauncher launcher;
  ModelDownloadClient client{executor,
                             launcher,
                             {.executable = executable,
                              .store = store.path(),
                              .environment = {"https_proxy=http://proxy"},
                              .arguments = {},
                              .mayExecute = [this](const auto&) { return isAllowed; }}};
  Registration changes;
  Strings told;
};

TEST_F(DownloadClient, FollowsADownloadAndEndsTheProcessWhenNothingIsLeft) {
  std::atomic<bool> inputEnded = false;
  scripts = {[&](FakeChildSide& side) {
    say(side, "ready");
    hear(side);
    side.write("not json\n{\"mrm_downloader_protocol\":2,\"event\":\"installed\",\"identifier\":\"a\"}\n");
    say(side, "progress", R"("identifier":"a","state":"downloading","received":50,"total":100)");
    say(side, "installed", R"("identifier":"a")");
    say(side, "idle");
    inputEnded = !hear(side);
  }};
  client.download({"a"}, required);
  EXPECT_TRUE(client.isActive());
  ASSERT_TRUE(waitForState("a", State::installed));
  EXPECT_EQ(client.status("a")->total, 100);
  EXPECT_FALSE(client.isActive());
  ASSERT_TRUE(executor.waitUntil([&] { return launcher.childCount() == 0; }));
  EXPECT_TRUE(inputEnded);
  ASSERT_EQ(heard.size(), 1U);
  EXPECT_TRUE(contains(heard.front(), R"("identifiers":["a"],"importance":"required")"));
  EXPECT_EQ(launcher.requests()[0].arguments, (Strings{"--store", store.path().string()}));
  EXPECT_EQ(launcher.requests()[0].environment, Strings{"https_proxy=http://proxy"});
  EXPECT_EQ(told, (Strings{"a 0", "a 2", "a 5"}));
}

TEST_F(DownloadClient, StartsAgainAfterADeathAndAsksForWhatIsLeft) {
  scripts = {[&](FakeChildSide& side) {
               hear(side);
               hear(side);
               say(side, "installed", R"("identifier":"a")");
             },
             [&](FakeChildSide& side) {
               hear(side);
               say(side, "installed", R"("identifier":"b")");
               say(side, "idle");
             }};
  client.download({"a"}, required);
  client.download({"b"}, optional);
  ASSERT_TRUE(waitForState("a", State::installed));
  ASSERT_TRUE(executor.waitUntil([&] { return launcher.childCount() == 0; }));
  EXPECT_EQ(starts, 1u) << "not before the delay";
  executor.advance(std::chrono::seconds(1));
  ASSERT_TRUE(waitForState("b", State::installed));
  EXPECT_TRUE(contains(heard.back(), R"("identifiers":["b"],"importance":"optional")"));
}

TEST_F(DownloadClient, GivesUpOnADownloaderThatDiesEveryTime) {
  client.download({"a"}, required);
  ASSERT_TRUE(executor.waitUntil([&] {
    executor.advance(std::chrono::seconds(30));
    return client.status("a")->isOver();
  }));
  EXPECT_EQ(client.status("a")->state, State::failed);
  EXPECT_EQ(client.status("a")->message, "The model downloader ended unexpectedly.");
  EXPECT_EQ(starts, 6u);
}

TEST_F(DownloadClient, SaysWhyNothingCanBeDownloaded) {
  isAllowed = false;
  client.download({"a"}, required);
  EXPECT_EQ(client.status("a")->state, State::failed);
  EXPECT_EQ(starts, 0u);

  isAllowed = true;
  scripts = {[&](FakeChildSide& side) {
    say(side, "fatal", R"("message":"Another download into this folder is running.")");
  }};
  client.download({"a"}, required);
  ASSERT_TRUE(waitForState("a", State::failed));
  EXPECT_EQ(client.status("a")->message, "Another download into this folder is running.");
}

TEST_F(DownloadClient, CancelsAtOnceAndIgnoresWhatComesLate) {
  scripts = {[&](FakeChildSide& side) {
    hear(side);
    hear(side);
    say(side, "progress", R"("identifier":"a","state":"downloading","received":1,"total":2)");
    say(side, "cancelled", R"("identifier":"a")");
    say(side, "idle");
    hear(side);
  }};
  client.download({"a"}, required);
  client.cancel({"a"});
  EXPECT_EQ(client.status("a")->state, State::cancelled);
  ASSERT_TRUE(executor.waitUntil([&] { return launcher.childCount() == 0; }));
  EXPECT_EQ(client.status("a")->state, State::cancelled);
  EXPECT_TRUE(contains(heard.back(), R"("command":"cancel","discard":false)"));
}

TEST_F(DownloadClient, StartsANewProcessForWhatIsAskedForWhileTheOldOneCloses) {
  scripts = {[&](FakeChildSide& side) {
               hear(side);
               // In one piece, so that they are read in one turn of the loop.
               side.write(line("installed", R"("identifier":"a")") + line("idle"));
               hear(side);
             },
             [&](FakeChildSide& side) {
               hear(side);
               say(side, "installed", R"("identifier":"b")");
               hear(side);
             }};
  client.download({"a"}, required);
  bool asked = false;
  const auto next = client.onChange([&](const auto&, const auto& status) {
    // In the same turn of the loop in which "idle" is read.
    if (status.state == State::installed && !std::exchange(asked, true)) client.download({"b"}, required);
  });
  ASSERT_TRUE(waitForState("b", State::installed));
}

TEST_F(DownloadClient, TellsTheDownloaderWhileAnybodyDictates) {
  scripts = {[&](FakeChildSide& side) {
    while (hear(side)) {
    }
  }};
  DownloadRuntimePriority priority(client);
  priority.notifyOptionalControls(true);
  client.download({"a"}, optional);
  priority.notifyOptionalControls(true);
  priority.notifyOptionalControls(false);
  priority.notifyOptionalControls(false);
  ASSERT_TRUE(executor.waitUntil([&] { return heardCount() >= 3; }));
  ASSERT_EQ(heard.size(), 3U);
  const std::array parts{R"("active":true)", "download", R"("active":false)"};
  for (std::size_t index = 0; index < 3; ++index) EXPECT_TRUE(contains(heard[index], parts[index]));
}

TEST_F(DownloadClient, ForgetsWhatArrivedWithoutAProcess) {
  // The digest of "parakeet:config.json".
  const std::string digest = "44136fa355b3678a1146ad16f7e8649e94fb4fc21fe77e8310c060f61caaff8a";
  std::filesystem::create_directory(store.path() / ".downloads");
  std::ofstream(store.path() / ".downloads" / (digest + ".part")) << "{";
  client.discard({"parakeet:config.json"});
  EXPECT_TRUE(std::filesystem::is_empty(store.path()));
  EXPECT_EQ(starts, 0u);
}

}  // namespace
}  // namespace murmel
