#include "Models/ArtifactVerifier.h"
#include "Models/ModelManager.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

constexpr SpeechModelFile files[] = {
    {"words.txt", 5, "2cf24dba5fb0a30e26e83b2ac5b9e29e1b161e5c1fa7425e73043362938b9824"},       // hello
    {"acoustic/means", 3, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},  // abc
};

SpeechModel modelIn(const std::filesystem::path& folder) {
  return {folder, {std::begin(files), std::end(files)}};
}

class InstalledModel : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories(folder.path() / "acoustic");
    write("words.txt", "hello");
    write("acoustic/means", "abc");
  }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(folder.path() / name, std::ios::binary | std::ios::trunc) << text;
  }
  /// The states from now on until nothing more comes.
  std::vector<SpeechModelState> validate() {
    std::vector<SpeechModelState> states;
    const auto subscription = manager.onInventoryChange([&] { states.push_back(manager.state()); });
    manager.validate();
    states.push_back(manager.state());
    EXPECT_TRUE(executor.waitUntil([&] { return manager.state() != SpeechModelState::verifying; }));
    executor.runUntilIdle();
    return states;
  }

  TemporaryFolder folder;
  ManualExecutor executor;
  ModelManager manager{executor, {modelIn(folder.path())}};
};

constexpr auto missing = SpeechModelState::missing;
constexpr auto verifying = SpeechModelState::verifying;
constexpr auto good = SpeechModelState::ready;

}  // namespace

TEST_F(InstalledModel, BecomesReadyAfterVerificationAndStaysSo) {
  EXPECT_EQ(manager.state(), missing) << "nobody has looked yet";
  EXPECT_EQ(manager.activeModelURL(), folder.path());
  const auto states = validate();
  EXPECT_EQ(states.front(), verifying);
  EXPECT_EQ(states.back(), good);
  // Known by then: ready at once, and nothing to tell.
  EXPECT_EQ(validate(), std::vector{good});
}

TEST_F(InstalledModel, IsMissingWhenAnythingIsWrong) {
  struct Row {
    const char* name;
    std::function<void()> damage;
    bool seenAtOnce;
  };
  const std::vector<Row> rows{
      {"a file is not there", [&] { std::filesystem::remove(folder.path() / "words.txt"); }, true},
      {"a file is too short", [&] { write("words.txt", "hell"); }, true},
      {"a file is too long", [&] { write("words.txt", "hello\n"); }, true},
      {"a file is empty", [&] { write("acoustic/means", ""); }, true},
      {"a folder in place of a file",
       [&] {
         std::filesystem::remove(folder.path() / "words.txt");
         std::filesystem::create_directory(folder.path() / "words.txt");
       },
       true},
      {"a fifo in place of a file",
       [&] {
         std::filesystem::remove(folder.path() / "words.txt");
         ASSERT_EQ(::mkfifo((folder.path() / "words.txt").c_str(), 0600), 0);
       },
       true},
      {"a link in place of a file",
       [&] {
         std::filesystem::rename(folder.path() / "words.txt", folder.path() / "elsewhere");
         std::filesystem::create_symlink("elsewhere", folder.path() / "words.txt");
       },
       true},
      {"other contents of the same size", [&] { write("words.txt", "hellO"); }, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::filesystem::remove_all(folder.path() / "words.txt");
    SetUp();
    validate();
    ASSERT_EQ(manager.state(), good);
    row.damage();
    EXPECT_EQ(manager.requiredItemsPresent(folder.path()), !row.seenAtOnce);
    const auto states = validate();
    EXPECT_EQ(states.front(), row.seenAtOnce ? missing : verifying);
    EXPECT_FALSE(manager.requiredItemsPresent(folder.path())) << "known to be wrong by now";
    EXPECT_EQ(states.back(), missing);
    EXPECT_FALSE(manager.verifyArtifacts(folder.path()));
  }
}

TEST_F(InstalledModel, NoticesAnExchangeThatKeepsSizeAndTime) {
  validate();
  ASSERT_EQ(manager.state(), good);
  const auto words = folder.path() / "words.txt";
  const auto time = std::filesystem::last_write_time(words);
  // The file system's clock moves in steps: two changes within one cannot be told apart.
  do write("scratch", "");
  while (std::filesystem::last_write_time(folder.path() / "scratch") == time);
  write("words.txt", "HELLO");
  std::filesystem::last_write_time(words, time);
  EXPECT_FALSE(manager.verifyArtifacts(folder.path()));
}

TEST(ArtifactVerifier, TrustsNoFileThatChangesWhileItIsRead) {
  const TemporaryFolder folder;
  const auto path = folder.path() / "large";
  std::ofstream(path).flush();
  constexpr std::uintmax_t size = 16 << 20;
  std::filesystem::resize_file(path, size);
  // Zeros all the time, but somebody keeps on writing.
  const std::jthread writer([&](const std::stop_token& stop) {
    while (!stop.stop_requested()) ::utimensat(AT_FDCWD, path.c_str(), nullptr, 0);
  });
  const ModelArtifact zeros{path, size, "080acf35a507ac9849cfcba47dc2ad83e01b75663a516279c8b9d243b719643e"};
  constexpr int patience = 100;  // the writer may not get its turn during one reading
  bool isRefused = false;
  for (int attempt = 0; attempt < patience && !isRefused; ++attempt)
    isRefused = !ArtifactVerifier().verify(zeros, false);
  EXPECT_TRUE(isRefused);
}

TEST_F(InstalledModel, IsFoundWhenItComesLater) {
  std::filesystem::rename(folder.path() / "words.txt", folder.path() / "elsewhere");
  EXPECT_EQ(validate(), std::vector{missing});
  std::filesystem::rename(folder.path() / "elsewhere", folder.path() / "words.txt");
  validate();
  EXPECT_EQ(manager.state(), good);
}

TEST_F(InstalledModel, VerifiesOtherFoldersByTheirOwnContents) {
  validate();
  const TemporaryFolder other;
  EXPECT_FALSE(manager.verifyArtifacts(other.path()));
  std::filesystem::copy(folder.path(), other.path(), std::filesystem::copy_options::recursive);
  EXPECT_TRUE(manager.verifyArtifacts(other.path()));
  std::ofstream(other.path() / "words.txt") << "hellO";
  EXPECT_FALSE(manager.verifyArtifacts(other.path()));
  EXPECT_TRUE(manager.verifyArtifacts(folder.path()));
}

TEST_F(InstalledModel, SaysNothingMoreOnceItIsDestroyed) {
  int told = 0;
  {
    ModelManager shortLived(executor, {modelIn(folder.path())});
    const auto subscription = shortLived.onInventoryChange([&] { ++told; });
    shortLived.validate();
  }
  executor.runUntilIdle();
  EXPECT_EQ(told, 0);
}

/// Two models, the preferred one in "best".
class SeveralModels : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const auto* name : {"best", "fallback"}) write(name, "hello");
  }
  void write(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories(folder.path() / name);
    std::ofstream(folder.path() / name / "words.txt", std::ios::binary | std::ios::trunc) << text;
  }
  std::string active(ModelManager& manager) {
    manager.validate();
    EXPECT_TRUE(executor.waitUntil([&] { return manager.state() != verifying; }));
    if (manager.state() != good) return "none, wants " + manager.activeModelURL().filename().string();
    return manager.activeModelURL().filename().string();
  }
  [[nodiscard]] std::vector<SpeechModel> models() const {
    return {{folder.path() / "best", {files[0]}}, {folder.path() / "fallback", {files[0]}}};
  }

  TemporaryFolder folder;
  ManualExecutor executor;
};

TEST_F(SeveralModels, TheBestThatIsWholeIsActive) {
  ModelManager manager(executor, models());
  EXPECT_EQ(active(manager), "best");
  write("best", "hellO");
  EXPECT_EQ(active(manager), "fallback");
  write("best", "hell");
  EXPECT_EQ(active(manager), "fallback");
  write("fallback", "");
  EXPECT_EQ(active(manager), "none, wants best");
  // Repaired, and whoever holds the other model is told.
  int told = 0;
  const auto subscription = manager.onInventoryChange([&] { ++told; });
  write("best", "hello");
  EXPECT_EQ(active(manager), "best");
  executor.runUntilIdle();
  EXPECT_GT(told, 0);
}

TEST_F(SeveralModels, AModelWhoseEngineKnowsTheForcedLanguageGoesFirst) {
  auto all = models();
  all[0].engine = &speechEngine("parakeet");
  all[1].engine = &speechEngine("whisper-base");
  ModelManager manager(executor, all);
  EXPECT_EQ(active(manager), "best");
  for (const auto& [language, model] :
       {std::pair("be", "fallback"), {"de", "best"}, {"xx", "best"}, {"b", "best"}}) {
    manager.setLanguage(language);
    EXPECT_EQ(active(manager), model) << language;
  }
  write("fallback", "");
  manager.setLanguage("be");
  EXPECT_EQ(active(manager), "best") << "better the wrong engine than none";
}

TEST_F(SeveralModels, ReadsNothingAgainAfterARestart) {
  const auto inventory = [&] { return std::make_shared<ModelInventory>(folder.path()); };
  {
    ModelManager manager(executor, models(), inventory());
    EXPECT_EQ(active(manager), "best");
  }
  ModelManager restarted(executor, models(), inventory());
  restarted.validate();
  EXPECT_EQ(restarted.state(), good) << "known at once";
  // But a change while nobody looked is noticed.
  write("best", "hellO");
  ModelManager again(executor, models(), inventory());
  again.validate();
  EXPECT_EQ(again.state(), verifying);
  EXPECT_EQ(active(again), "fallback");
}

TEST_F(SeveralModels, ADamagedMemoryOnlyCostsTime) {
  const auto memory = folder.path() / ".verified.json";
  for (const auto* text : {"", "null", "[1,2]", "{\"x\":{}}", "{\"x\":{\"size\":-1}}", "\xff\xfe"}) {
    std::ofstream(memory, std::ios::trunc) << text;
    ModelManager manager(executor, models(), std::make_shared<ModelInventory>(folder.path()));
    EXPECT_EQ(active(manager), "best") << text;
  }
  // A memory that cannot be written neither.
  ModelManager manager(executor, models(), std::make_shared<ModelInventory>(folder.path() / "no" / "such"));
  EXPECT_EQ(active(manager), "best");
}

TEST(PackagedModel, IsTheOneThatTheManagerKnows) {
  ManualExecutor executor;
  const ModelManager manager(executor);
  if (!std::filesystem::exists(packagedSpeechModelFolder))
    GTEST_SKIP() << "pocketsphinx-en-us is not installed";
  EXPECT_TRUE(manager.requiredItemsPresent(manager.activeModelURL()));
  EXPECT_TRUE(manager.verifyArtifacts(manager.activeModelURL()));
}
