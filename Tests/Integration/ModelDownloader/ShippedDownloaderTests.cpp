#include "Integration/ModelDownloader/ModelHost.h"
#include "Models/ModelDownloadProbe.h"
#include "Models/ModelsCommand.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Support/BuildPaths.h"
#include "Support/Testing.h"

namespace {

namespace fs = std::filesystem;

/// The child of this process with that name (of at most 15 bytes, as the kernel keeps it); 0 when there is
/// none.
pid_t childNamed(const std::string& name) {
  std::ifstream children("/proc/self/task/" + std::to_string(::gettid()) + "/children");
  for (pid_t child = 0; children >> child;) {
    std::string line;
    std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm") >> std::ws, line);
    if (line == name) return child;
  }
  return 0;
}

/// The application's side and the executable as it is shipped, with its own list of files.
class ShippedDownloader : public testing::Test {
 protected:
  ShippedDownloader() {
    std::signal(SIGPIPE, SIG_IGN);  // as the application does
    host.addFile("config.json", "{}");
  }
  ModelDownloadClient::Configuration configuration(const std::string& actions) {
    return {
        .executable = resourcesFolder() + "/Workers/mrm-model-downloader",
        .store = folder.path() / "Models",
        .environment = {},
        .arguments = {"--development-host", host.address("shipped", actions), "--development-certificates",
                      host.certificate(), "--development-time-scale", "0.002"},
        .mayExecute = {},
        .readable = {host.certificate()}};
  }
  std::pair<int, std::string> probe(const ModelDownloadClient::Configuration& setting) {
    std::optional<std::pair<int, std::string>> result;
    ModelDownloadProbe probe(executor, launcher, setting, folder.path());
    probe.run([&](auto status, const auto& line) { result = {status, line}; });
    EXPECT_TRUE(executor.waitUntil([&] { return result.has_value(); }));
    return result.value_or(std::pair(-1, std::string()));
  }

  ModelHost host;
  TemporaryFolder folder;
  ManualExecutor executor;
  LinuxProcessLauncher launcher;
};

TEST_F(ShippedDownloader, PassesTheReleaseProbeAndLeavesNothing) {
  EXPECT_EQ(probe(configuration("ok")), std::pair(0, std::string("The model downloader works.")));
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(ShippedDownloader, TheProbeTellsAFailureFromAHostThatIsAway) {
  EXPECT_EQ(probe(configuration("status@503")).first, ModelDownloadProbe::unreachable);
  EXPECT_EQ(probe(configuration("bytes")).first, ModelDownloadProbe::failed);
  EXPECT_EQ(probe(configuration("http")).first, ModelDownloadProbe::failed);
  auto absent = configuration("ok");
  absent.executable = "/nowhere/mrm-model-downloader";
  EXPECT_EQ(probe(absent).first, ModelDownloadProbe::failed);
  auto wrong = configuration("ok");
  wrong.arguments = {"--development-host", "http://localhost/"};
  EXPECT_EQ(probe(wrong).first, ModelDownloadProbe::failed);
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(ShippedDownloader, ServesTheCommand) {
  const std::vector<CatalogModel> catalog{
      {"tiny", "A tiny file", {"parakeet:config.json"}, MRMModelDownloadImportance::required}};
  ModelDownloadClient client(executor, launcher, configuration("cut@1,ok"));
  const auto run = [&](const Strings& arguments) {
    std::string text;
    int status = -1;
    const auto tell = [&](std::string_view more) { text += more; };
    ModelsCommand command(executor, std::make_shared<ModelInventory>(folder.path() / "Models"), &client,
                          {.print = tell, .complain = tell}, {}, catalog);
    command.start(arguments, [&](int ended) { status = ended; });
    EXPECT_TRUE(executor.waitUntil([&] { return status >= 0; }));
    return text;
  };
  EXPECT_TRUE(contains(run({"download", "tiny"}), "Installed."));
  EXPECT_TRUE(contains(run({"verify", "tiny"}), "verified"));
  EXPECT_TRUE(contains(run({"remove", "tiny"}), "Removed."));
  EXPECT_TRUE(fs::is_empty(folder.path() / "Models"));
  ASSERT_TRUE(executor.waitUntil([&] { return !client.isActive(); }));
}

TEST_F(ShippedDownloader, GoesOnWhenItIsKilled) {
  std::optional<ModelDownloadStatus> last;
  ModelDownloadClient client(executor, launcher, configuration("stall@1,ok"));
  const auto changes = client.onChange([&](const auto&, const auto& status) { last = status; });
  client.download({"parakeet:config.json"}, MRMModelDownloadImportance::required);
  ASSERT_TRUE(executor.waitUntil([&] { return last && last->received == 1; }));
  const auto downloader = childNamed("mrm-model-downl");
  ASSERT_GT(downloader, 0);
  ASSERT_EQ(::kill(downloader, SIGKILL), 0);
  ASSERT_TRUE(executor.waitUntil([&] {
    executor.advance(std::chrono::seconds(1));
    return last->isOver();
  }));
  EXPECT_EQ(last->state, ModelDownloadStatus::State::installed);
}

}  // namespace
