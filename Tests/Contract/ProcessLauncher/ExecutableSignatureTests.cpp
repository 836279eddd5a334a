#include "Platform/Linux/Process/SignedExecutableManifest.h"
#include "Product/ExecutableRuntimePolicy.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <iterator>

namespace {

using Manifest = SignedExecutableManifest;

std::string read(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const std::filesystem::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
}

class ExecutableSignature : public ::testing::Test {
 protected:
  void SetUp() override {
    write(worker, "what a worker consists of");
    ASSERT_TRUE(Manifest::sign(worker, key));
  }
  [[nodiscard]] bool mayExecute(const std::filesystem::path& executable) const {
    const auto team = Manifest::team(key.publicKey());
    return ExecutableRuntimePolicy(folder.path(), team,
                                   [](const auto& file) { return Manifest::teamOf(file); })
        .mayExecute(executable);
  }

  TemporaryFolder folder;
  const std::filesystem::path worker = folder.path() / "worker";
  const std::filesystem::path manifest = folder.path() / "worker.manifest";
  const ed25519::SigningKey key = *ed25519::SigningKey::generate();
  const ed25519::SigningKey foreignKey = *ed25519::SigningKey::generate();
};

}  // namespace

TEST_F(ExecutableSignature, AllowsWhatTheOwnTeamSigned) {
  EXPECT_TRUE(mayExecute(worker));
  EXPECT_EQ(Manifest::teamOf(worker), Manifest::team(key.publicKey()));
  EXPECT_NE(Manifest::team(key.publicKey()), Manifest::team(foreignKey.publicKey()));
}

TEST_F(ExecutableSignature, RefusesEverythingElse) {
  const auto replaced = [](std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
  };
  const auto original = read(manifest);
  const auto signature = original.find("signature ") + 10;
  struct Row {
    const char* name;
    std::function<void()> tamper;
  };
  const std::vector<Row> rows{
      {"another worker", [&] { write(worker, "what a worker consists oF"); }},
      {"a longer worker", [&] { write(worker, read(worker) + '\0'); }},
      {"another name", [&] { write(manifest, replaced(original, "name worker", "name Worker")); }},
      {"a flipped signature",
       [&] {
         auto text = original;
         text[signature] = text[signature] == '0' ? '1' : '0';
         write(manifest, text);
       }},
      {"the foreign key in place of ours",
       [&] {
         const TemporaryFolder other;
         write(other.path() / "worker", read(worker));
         ASSERT_TRUE(Manifest::sign(other.path() / "worker", foreignKey));
         const auto foreign = read(other.path() / "worker.manifest");
         const auto line = [](const std::string& text) { return text.substr(text.find("key "), 68); };
         write(manifest, replaced(original, line(original), line(foreign)));
       }},
      {"a line more", [&] { write(manifest, original + "name worker\n"); }},
      {"no end of line", [&] { write(manifest, original.substr(0, original.size() - 1)); }},
      {"no signature", [&] { write(manifest, original.substr(0, signature)); }},
      {"an empty manifest", [&] { write(manifest, ""); }},
      {"a huge manifest", [&] { write(manifest, original + std::string(1 << 20, '\n')); }},
      {"no manifest", [&] { std::filesystem::remove(manifest); }},
  };
  for (const auto& row : rows) {
    SetUp();
    ASSERT_TRUE(mayExecute(worker));
    row.tamper();
    EXPECT_EQ(Manifest::teamOf(worker), std::nullopt) << row.name;
    EXPECT_FALSE(mayExecute(worker)) << row.name;
  }
}

TEST_F(ExecutableSignature, RefusesAnotherTeamsValidSignature) {
  ASSERT_TRUE(Manifest::sign(worker, foreignKey));
  EXPECT_EQ(Manifest::teamOf(worker), Manifest::team(foreignKey.publicKey()));
  EXPECT_FALSE(mayExecute(worker));
}

TEST_F(ExecutableSignature, DoesNotLetOneSignedExecutableStandInForAnother) {
  const auto other = folder.path() / "updater";
  std::filesystem::copy_file(worker, other);
  std::filesystem::copy_file(manifest, folder.path() / "updater.manifest");
  EXPECT_FALSE(mayExecute(other));
}

TEST_F(ExecutableSignature, RefusesASignedExecutableOutsideTheResources) {
  const TemporaryFolder outside;
  const auto stray = outside.path() / "worker";
  std::filesystem::copy_file(worker, stray);
  std::filesystem::copy_file(manifest, outside.path() / "worker.manifest");
  EXPECT_NE(Manifest::teamOf(stray), std::nullopt);
  EXPECT_FALSE(mayExecute(stray));
  std::filesystem::create_symlink(stray, folder.path() / "link");
  EXPECT_FALSE(mayExecute(folder.path() / "link"));
  EXPECT_FALSE(mayExecute(folder.path() / ".." / outside.path().filename() / "worker"));
  // A folder whose name only begins like ours.
  std::filesystem::create_directory(outside.path() / "resources");
  std::filesystem::create_directory(outside.path() / "resources-of-others");
  const auto neighbour = outside.path() / "resources-of-others" / "worker";
  std::filesystem::copy_file(worker, neighbour);
  const ExecutableRuntimePolicy unsignedBuild(outside.path() / "resources", std::nullopt, nullptr);
  EXPECT_FALSE(unsignedBuild.mayExecute(neighbour));
}
