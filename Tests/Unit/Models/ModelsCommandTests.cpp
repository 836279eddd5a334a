#include "Models/ModelsCommand.h"
#include "Platform/Fake/FakeProcessLauncher.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace murmel {
namespace {

namespace fs = std::filesystem;
constexpr auto mustHave = MRMModelDownloadImportance::required;

class Models : public testing::Test {
 protected:
  Models() { std::signal(SIGPIPE, SIG_IGN); }  // as the application does
  struct Answer {
    int status;
    std::string text, complaint;
  };
  Answer run(const Strings& arguments) {
    Answer answer{-1, {}, {}};
    ModelsCommand command(executor, inventory(), &client,
                          {.print = [&](std::string_view text) { answer.text += text; },
                           .complain = [&](std::string_view text) { answer.complaint += text; }},
                          machine, catalog);
    command.start(arguments, [&](int status) { answer.status = status; });
    EXPECT_TRUE(executor.waitUntil([&] { return answer.status >= 0; }));
    return answer;
  }
  [[nodiscard]] std::shared_ptr<ModelInventory> inventory() const {
    return std::make_shared<ModelInventory>(store, folder.path() / "package");
  }
  void put(const fs::path& place, const std::string& text) const {
    fs::create_directories((store / place).parent_path());
    std::ofstream(store / place, std::ios::trunc) << text;
  }

  // Small files of the real manifest.
  const std::vector<CatalogModel> catalog{
      {"first", "First model", {"parakeet:config.json"}, mustHave},
      {"second", "Second model", {"parakeet:Decoder.mlmodelc/coremldata.bin"}, mustHave},
  };
  ModelMachine machine{.memory = 1'000'000'000, .speechEngineLevel = 3};
  const fs::path config = "Parakeet/parakeet-tdt-0.6b-v3-coreml/config.json";
  TemporaryFolder folder;
  fs::path store = folder.path() / "Models";
  ManualExecutor executor;
  FakeProcessLauncher launcher;
  ModelDownloadClient client{
      executor,
      launcher,
      {.executable = "/downloader", .store = store, .environment = {}, .arguments = {}, .mayExecute = {}}};
};

TEST_F(Models, ListsVerifiesAndRemovesWhatIsThere) {
  EXPECT_TRUE(contains(run({"list"}).text, "not installed"));
  EXPECT_EQ(run({"verify"}).text, "No model is installed.\n");
  put(config, "{}");
  EXPECT_TRUE(contains(run({"list"}).text, "installed, not verified yet"));
  EXPECT_EQ(run({"verify"}).status, 0);
  put(config, "[]");
  EXPECT_EQ(run({"verify", "first"}).status, 1);
  EXPECT_EQ(run({"verify", "second"}).status, 1);

  fs::create_directory(store / ".downloads");
  std::ofstream(store / ".downloads/44136fa355b3678a1146ad16f7e8649e94fb4fc21fe77e8310c060f61caaff8a.part")
      << "{";
  EXPECT_EQ(run({"remove", "first"}).text, "Removed.\n");
  EXPECT_TRUE(fs::is_empty(store)) << "a folder or a temporary file stayed";
  EXPECT_EQ(run({"remove", "first"}).text, "The model is not installed.\n");
}

TEST_F(Models, FindsWhatThePackageBringsAndLeavesItThere) {
  put("../package/Models" / config, "{}");
  EXPECT_EQ(inventory()->look(Strings{"parakeet:config.json"}), ModelInventory::Finding::unknown);
  EXPECT_TRUE(contains(run({"verify"}).text, "first           verified"));
  EXPECT_TRUE(contains(run({"list"}).text, "First model · Packaged"));
  EXPECT_EQ(run({"remove", "first"}).status, 1);
  // The user's own goes first, also when it is worse: that is the one that is repaired.
  put(config, "[]");
  EXPECT_EQ(run({"verify", "first"}).status, 1);
  EXPECT_EQ(run({"remove", "first"}).text, "Removed.\n");
  EXPECT_EQ(run({"verify", "first"}).status, 0);
}

TEST_F(Models, SaysWhatAModelIsGoodForAndWhyItIsOfNoUseHere) {
  const struct {
    const char* name;
    ModelMachine machine;
    const char* obstacle;
  } rows[] = {
      {"parakeet", {8'000'000'000, 3, "no server", "no library"}, ""},
      {"parakeet", {8'000'000'000, 2}, "this processor is too old"},
      {"parakeet", {1'000'000'000, 4}, "needs 1.3 GB of memory, and this computer has 1.0 GB"},
      {"whisper-base", {8'000'000'000, 2}, ""},
      {"gemma-4-e2b", {8'000'000'000, 3, "no server", ""}, "Cannot run here: no server."},
      {"sage", {8'000'000'000, 3, "", "no library"}, "Cannot run here: no library."},
  };
  for (const auto& row : rows) {
    const auto obstacle = whyUnusable(*catalogModel(row.name), row.machine);
    EXPECT_EQ(obstacle.empty(), std::string_view(row.obstacle).empty()) << row.name;
    EXPECT_TRUE(contains(obstacle, row.obstacle));
  }
  EXPECT_TRUE(contains(whyNotDownloadable(*catalogModel("sage")), "never been confirmed"));
  EXPECT_EQ(whyNotDownloadable(*catalogModel("parakeet")), "");
}

TEST_F(Models, RemembersWhatSeveralProcessesVerifyAtOnce) {
  constexpr int processes = 4;
  constexpr int each = 15;
  fs::create_directories(store);
  std::vector<ModelArtifact> files;
  for (int number = 0; number < processes * each; ++number) {
    const auto file = store / std::to_string(number);
    std::ofstream(file) << "{}";
    files.push_back({file, 2, "44136fa355b3678a1146ad16f7e8649e94fb4fc21fe77e8310c060f61caaff8a"});
  }
  const std::atomic<bool> never = false;
  std::vector<std::jthread> running;
  for (int process = 0; process < processes; ++process) {
    running.emplace_back([&, process] {
      ArtifactVerifier verifier(store / ".verified.json");
      for (int number = 0; number < each; ++number)
        verifier.verify(files[static_cast<std::size_t>(process * each + number)], never);
    });
  }
  running.clear();
  const ArtifactVerifier later(store / ".verified.json");
  for (const auto& file : files)
    EXPECT_EQ(later.look(file), ArtifactVerifier::Finding::verified) << file.path;
}

TEST_F(Models, RefusesCommandsThatItDoesNotKnow) {
  const std::vector<Strings> wrong{{"lists"}, {"remove"}, {"list", "first"}, {"download", "first", "second"}};
  for (const auto& arguments : wrong) {
    const auto answer = run(arguments);
    EXPECT_EQ(answer.status, 2);
    EXPECT_TRUE(contains(answer.complaint, "usage: murmel models"));
  }
  const auto unknown = run({"download", "../first"});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_TRUE(contains(unknown.complaint, "There is no model \"../first\""));
}

TEST_F(Models, DownloadsAndTellsHowItEnded) {
  for (const bool succeeds : {true, false}) {
    launcher.install("/downloader", [this, succeeds](FakeChildSide& side) {
      side.readLine();
      if (succeeds) put(config, "{}");
      const std::string head = R"({"mrm_downloader_protocol":1,"identifier":"parakeet:config.json","event":)";
      side.write(head + R"("progress","state":"retrying","received":0,"total":2,"message":"No network."})" +
                 "\n");
      side.write(head +
                 (succeeds ? R"("installed"})" : R"("failed","reason":"offline","message":"Not there."})") +
                 // In one piece: the next request must not meet a process that is about to end.
                 "\n{\"mrm_downloader_protocol\":1,\"event\":\"idle\"}\n");
      side.readLine();
    });
    const auto answer = run({"download"});
    EXPECT_EQ(answer.status, succeeds ? 0 : 1);
    EXPECT_TRUE(contains(answer.text, "No network. Trying again."));
    EXPECT_TRUE(contains(answer.text, succeeds ? "Installed.\n" : ""));
    EXPECT_EQ(answer.complaint, succeeds ? "" : "Not there.");
  }
}

}  // namespace
}  // namespace murmel
