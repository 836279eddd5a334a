#include "Platform/Linux/Process/SignedExecutableManifest.h"
#include "Shell/Installation.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

class RuntimePolicy : public ::testing::Test {
 protected:
  RuntimePolicy() {
    folders.executable = folder.path() / "murmel";
    folders.resources = folder.path() / "lib";
    std::filesystem::create_directory(folders.resources);
    for (const auto& file : {folders.executable, worker()}) std::ofstream(file) << "a program";
  }
  [[nodiscard]] std::filesystem::path worker() const { return folders.resources / "worker"; }
  [[nodiscard]] bool startsWorker(const std::string& releaseKey = {}) const {
    return Installation::from({}, folders, {}, releaseKey).policy.mayExecute(worker());
  }

  TemporaryFolder folder;
  ApplicationFolders folders;
  const ed25519::SigningKey ours = *ed25519::SigningKey::generate();
  const ed25519::SigningKey theirs = *ed25519::SigningKey::generate();
};

TEST_F(RuntimePolicy, of_a_development_build_starts_any_worker_of_its_own) {
  EXPECT_TRUE(startsWorker());
  ASSERT_TRUE(SignedExecutableManifest::sign(worker(), theirs));
  EXPECT_TRUE(startsWorker());
  EXPECT_FALSE(startsWorker(SignedExecutableManifest::team(theirs.publicKey()))) << "a release, unsigned";
}

TEST_F(RuntimePolicy, of_a_signed_build_starts_only_what_the_same_team_signed) {
  ASSERT_TRUE(SignedExecutableManifest::sign(folders.executable, ours));
  std::filesystem::rename(folder.path() / "murmel.manifest", folders.resources / "murmel.manifest");
  EXPECT_FALSE(startsWorker()) << "unsigned";
  ASSERT_TRUE(SignedExecutableManifest::sign(worker(), theirs));
  EXPECT_FALSE(startsWorker()) << "of another team";
  ASSERT_TRUE(SignedExecutableManifest::sign(worker(), ours));
  EXPECT_TRUE(startsWorker());
  EXPECT_TRUE(startsWorker(SignedExecutableManifest::team(ours.publicKey())));
  EXPECT_FALSE(startsWorker(SignedExecutableManifest::team(theirs.publicKey()))) << "all signed by another";
  std::ofstream(worker(), std::ios::app) << " changed";
  EXPECT_FALSE(startsWorker()) << "changed since";
  ASSERT_TRUE(SignedExecutableManifest::sign(worker(), ours));
  std::ofstream(folders.executable, std::ios::app) << " changed";
  EXPECT_FALSE(startsWorker()) << "the application itself was changed";
}

TEST(ApplicationFolders, WhatMustNotBeExchangedLiesWhereNobodyElseCanBe) {
  namespace fs = std::filesystem;
  const TemporaryFolder home;
  const auto place = [&](const char* name, fs::perms rights) {
    fs::create_directory(home.path() / name);
    fs::permissions(home.path() / name, rights);
    return home.path() / name;
  };
  const auto own = place("own", fs::perms::owner_all);
  fs::create_symlink(own, home.path() / "link");
  const auto theirs = place("theirs", fs::perms::owner_all);
  const bool isTheirs = ::chown(theirs.c_str(), 65534, 65534) == 0;
  const auto runtimeAt = [&](const fs::path& given) {
    const Environment environment({{"HOME", home.path()}, {"XDG_RUNTIME_DIR", given}});
    return ApplicationFolders::locate(environment)->temporary;
  };
  EXPECT_EQ(runtimeAt(own), own);
  for (const auto& hostile : {place("open", fs::perms::all), home.path() / "link",
                              isTheirs ? theirs : fs::path("/root"), home.path() / "nowhere"}) {
    const auto taken = runtimeAt(hostile);
    EXPECT_NE(taken, hostile);
    struct stat status {};
    ASSERT_EQ(::lstat(taken.c_str(), &status), 0) << taken;
    EXPECT_TRUE(S_ISDIR(status.st_mode) && (status.st_mode & 0777) == 0700 && status.st_uid == ::geteuid());
  }
}

}  // namespace
