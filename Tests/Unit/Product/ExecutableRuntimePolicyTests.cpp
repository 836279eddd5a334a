#include "Product/ExecutableRuntimePolicy.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace fs = std::filesystem;

namespace {

/// A resources folder with a worker in it, a neighbour whose name begins alike, and links in and out.
class ExecutableRuntimePolicyTest : public ::testing::Test {
 protected:
  ExecutableRuntimePolicyTest() {
    for (const auto& file : {resources / "Workers/worker", neighbour / "worker", root / "outside"}) {
      fs::create_directories(file.parent_path());
      std::ofstream(file) << "#!";
    }
    fs::create_symlink(root / "outside", resources / "link-out");
    fs::create_symlink("Workers/worker", resources / "link-in");
    fs::create_directory_symlink(neighbour, resources / "folder-out");
    fs::create_directory_symlink(resources, root / "alias");
  }
  TemporaryFolder folder;
  fs::path root = folder.path();
  fs::path resources = root / "lib/murmel";
  fs::path neighbour = root / "lib/murmel-evil";
};

}  // namespace

TEST_F(ExecutableRuntimePolicyTest, AcceptsOnlyWhatLiesInsideTheFolder) {
  struct Row {
    const char* what;
    fs::path executable;
    bool accepted;
  };
  const ExecutableRuntimePolicy development(resources, std::nullopt, {});
  for (const auto& row : std::vector<Row>{
           {"a worker", resources / "Workers/worker", true},
           {"a detour that stays inside", resources / "Workers/../Workers/./worker", true},
           {"a link to a worker inside", resources / "link-in", true},
           {"a way through another name of the folder", root / "alias/Workers/worker", true},
           {"a folder whose name begins alike", neighbour / "worker", false},
           {"a way out by dots", resources / "../murmel-evil/worker", false},
           {"a link to a file outside", resources / "link-out", false},
           {"a link to a folder outside", resources / "folder-out/worker", false},
           {"the folder itself", resources, false},
           {"nothing there", resources / "Workers/absent", false},
           {"no path", {}, false},
       }) {
    EXPECT_EQ(development.mayExecute(row.executable), row.accepted) << row.what;
  }
  const ExecutableRuntimePolicy byAlias(root / "alias", std::nullopt, {});
  EXPECT_TRUE(byAlias.mayExecute(resources / "Workers/worker"));
  const ExecutableRuntimePolicy nowhere(root / "absent", std::nullopt, {});
  EXPECT_FALSE(nowhere.mayExecute(resources / "Workers/worker"));
}

TEST_F(ExecutableRuntimePolicyTest, AsksForTheTeamOfTheFileThatIsMeant) {
  std::vector<fs::path> asked;
  std::optional<std::string> team;
  const ExecutableRuntimePolicy policy(resources, "TEAM", [&](const fs::path& file) {
    asked.push_back(file);
    return team;
  });
  EXPECT_FALSE(policy.mayExecute(resources / "link-in")) << "unsigned";
  team = "OTHER";
  EXPECT_FALSE(policy.mayExecute(resources / "link-in"));
  team = "TEAM";
  EXPECT_TRUE(policy.mayExecute(resources / "link-in"));
  EXPECT_EQ(asked, std::vector<fs::path>(3, fs::canonical(resources / "Workers/worker")));
  EXPECT_FALSE(policy.mayExecute(neighbour / "worker")) << "the right team in the wrong place";
}
