#include "Platform/Linux/Process/SignedExecutableManifest.h"
#include "Product/ExecutableRuntimePolicy.h"
#include "Support/FileBytes.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

using Manifest = SignedExecutableManifest;

class ExecutableSignature : public ::testing::Test {
 protected:
  void SetUp() override {
    writeFile(worker, "what a worker consists of");
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

TEST_F(ExecutableSignature, RefusesEverythingElse) {
  const auto replaced = [](std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
  };
  const auto original = contentsOf(manifest);
  const auto signature = original.find("signature ") + 10;
  struct Row {
    const char* name;
    std::function<void()> tamper;
  };
  const std::vector<Row> rows{
      {"another worker", [&] { writeFile(worker, "what a worker consists oF"); }},
      {"a longer worker", [&] { writeFile(worker, contentsOf(worker) + '\0'); }},
      {"another name", [&] { writeFile(manifest, replaced(original, "name worker", "name Worker")); }},
      {"a flipped signature",
       [&] {
         auto text = original;
         text[signature] = text[signature] == '0' ? '1' : '0';
         writeFile(manifest, text);
       }},
      {"the foreign key in place of ours",
       [&] {
         const TemporaryFolder other;
         writeFile(other.path() / "worker", contentsOf(worker));
         ASSERT_TRUE(Manifest::sign(other.path() / "worker", foreignKey));
         const auto foreign = contentsOf(other.path() / "worker.manifest");
         const auto line = [](const std::string& text) { return text.substr(text.find("key "), 68); };
         writeFile(manifest, replaced(original, line(original), line(foreign)));
       }},
      {"a line more", [&] { writeFile(manifest, original + "name worker\n"); }},
      {"no end of line", [&] { writeFile(manifest, original.substr(0, original.size() - 1)); }},
      {"no signature", [&] { writeFile(manifest, original.substr(0, signature)); }},
      {"an empty manifest", [&] { writeFile(manifest, ""); }},
      {"a huge manifest", [&] { writeFile(manifest, original + std::string(1 << 20, '\n')); }},
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

TEST_F(ExecutableSignature, DoesNotLetOneSignedExecutableStandInForAnother) {
  const auto other = folder.path() / "updater";
  std::filesystem::copy_file(worker, other);
  std::filesystem::copy_file(manifest, folder.path() / "updater.manifest");
  EXPECT_FALSE(mayExecute(other));
}
