#include "LocalModels/LanguageModelRuntime.h"
#include "LocalModels/QwenAPIKeyFile.h"
#include "LocalModels/QwenServerPlace.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <sys/resource.h>

namespace fs = std::filesystem;

namespace {

/// No file of this process grows beyond `size` bytes.
class SmallDisk {
 public:
  explicit SmallDisk(rlim_t size) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{size, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SmallDisk() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int) = nullptr;
};

constexpr auto unavailable = "protected API key file unavailable";

}  // namespace

TEST(QwenAPIKeyFile, IsNeverEmptyOrShort) {
  const TemporaryFolder folder;
  EXPECT_EQ(QwenAPIKeyFile::create(SecretBytes(), folder.path()).error(), unavailable);
  EXPECT_EQ(QwenAPIKeyFile::create(SecretBytes(63), folder.path()).error(), unavailable);
  for (const rlim_t size : {0, 1, 63}) {
    const SmallDisk full(size);
    EXPECT_EQ(QwenAPIKeyFile::create(QwenAPIKeyFile::makeToken(), folder.path()).error(), unavailable)
        << size;
  }
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST(QwenAPIKeyFile, IsWrittenWhereNobodyElseCanEnter) {
  const TemporaryFolder folder;
  const auto token = QwenAPIKeyFile::makeToken();
  const auto open = folder.path() / "open";
  fs::create_directory(open);
  fs::permissions(open, fs::perms(0755));
  EXPECT_EQ(QwenAPIKeyFile::create(token, open).error(), unavailable);
  fs::create_directory_symlink(folder.path(), folder.path() / "link");
  EXPECT_EQ(QwenAPIKeyFile::create(token, folder.path() / "link").error(), unavailable);
  std::ofstream(folder.path() / "file") << '.';
  EXPECT_EQ(QwenAPIKeyFile::create(token, folder.path() / "file").error(), unavailable);
  EXPECT_EQ(QwenAPIKeyFile::create(token, folder.path() / "missing" / "keys").error(), unavailable);
}

TEST(QwenServerPlace, IsSparedWhileItLivesAndLeavesNothing) {
  const TemporaryFolder folder;
  {
    auto place = QwenServerPlace::create(folder.path());
    ASSERT_TRUE(place.has_value()) << place.error();
    std::ofstream(place->keyDirectory() / "key") << "secret";
    std::ofstream(place->socketURL()) << '.';
    const auto moved = *std::move(place);
    EXPECT_TRUE(fs::exists(moved.socketURL()));
    const auto other = QwenServerPlace::create(folder.path());
    EXPECT_TRUE(fs::exists(moved.socketURL())) << "a living place was taken for a dead one";
    EXPECT_NE(other->socketURL(), moved.socketURL());
  }
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST(QwenServerPlace, RemovesOnlyWhatItMade) {
  const TemporaryFolder folder;
  for (const char* name : {"mrm-q-0123456", "mrm-q-012345678", "mrm-q-0123456g", "other-q-01234567"})
    fs::create_directory(folder.path() / name);
  fs::create_directory(folder.path() / "target");
  std::ofstream(folder.path() / "target" / "file") << '.';
  fs::create_directory_symlink(folder.path() / "target", folder.path() / "mrm-q-01234567");
  { const auto place = QwenServerPlace::create(folder.path()); }
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 6);
  EXPECT_TRUE(fs::exists(folder.path() / "target" / "file"));
}

TEST(LanguageModelRuntime, IsFoundInTheResourcesOrWhereADeveloperPoints) {
  const TemporaryFolder folder;
  const auto resources = folder.path() / "resources";
  const auto runtime = resources / "Runtime" / "llama-b10448" / "llama-server";
  const ExecutableRuntimePolicy policy(resources, std::nullopt, nullptr);
  const auto elsewhere = folder.path() / "llama-server";
  std::ofstream(elsewhere) << '.';
  using enum DistributionEdition;
  const auto shipped = LanguageModelRuntime::locate(resources, complete, policy, elsewhere.string());
  EXPECT_EQ(shipped.installedExecutable(), std::nullopt);
  fs::create_directories(runtime.parent_path());
  std::ofstream(runtime) << '.';
  EXPECT_EQ(shipped.installedExecutable(), runtime);
  EXPECT_TRUE(shipped.mayExecute(runtime));
  EXPECT_FALSE(shipped.mayExecute(elsewhere));

  const auto pointed = LanguageModelRuntime::locate(resources, development, policy, elsewhere.string());
  EXPECT_EQ(pointed.installedExecutable(), elsewhere);
  EXPECT_TRUE(pointed.mayExecute(elsewhere));
  EXPECT_FALSE(pointed.mayExecute(runtime));
  for (const auto& nothing : {std::optional<std::string>(), std::optional<std::string>("llama-server")})
    EXPECT_EQ(LanguageModelRuntime::locate(resources, development, policy, nothing).executable, runtime);
}
