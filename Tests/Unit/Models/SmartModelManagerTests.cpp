#include "Models/SmartModelManager.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Refinement/SmartLocalModel.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

namespace fs = std::filesystem;

// SHA-256 of "hello" and "abc".
constexpr std::string_view hello = "2cf24dba5fb0a30e26e83b2ac5b9e29e1b161e5c1fa7425e73043362938b9824";
constexpr std::string_view abc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

constexpr ApprovedModelDownload entry(std::string_view identifier, std::string_view file,
                                      std::string_view sha256, std::string_view folder) {
  return {identifier, "r", "v", file, sha256, std::nullopt, std::nullopt, folder};
}
constexpr ApprovedModelDownload approvedFiles[] = {
    entry("qwen:0.6b", "qwen.gguf", hello, "Refinement"),
    entry("sage:vocab.json", "vocab.json", abc, "Refinement/sage"),
    entry("sage:merges.txt", "merges.txt", hello, "Refinement/sage"),
};

class SmartModels : public testing::Test {
 protected:
  void write(const fs::path& path, const std::string& text) const {
    fs::create_directories((folder.path() / path).parent_path());
    std::ofstream(folder.path() / path, std::ios::trunc) << text;
  }
  void settle() {
    manager.validate();
    EXPECT_TRUE(executor.waitUntil([&] {
      return std::ranges::none_of(approvedFiles, [&](const auto& file) {
        return manager.state(file.identifier) == ModelFileState::verifying;
      });
    }));
  }

  TemporaryFolder folder;
  ManualExecutor executor;
  SmartModelManager manager{
      executor, std::make_shared<ModelInventory>(folder.path() / "Models", folder.path() / "resources"),
      approvedFiles};
};

TEST_F(SmartModels, AModelIsReadyOnceItsContentHasBeenRead) {
  settle();
  EXPECT_EQ(manager.state("qwen:0.6b"), ModelFileState::missing);
  write("Models/Refinement/qwen.gguf", "hello");
  EXPECT_FALSE(manager.isReady("qwen:0.6b")) << "not read yet";
  settle();
  EXPECT_EQ(manager.state("qwen:0.6b"), ModelFileState::ready);
  EXPECT_TRUE(manager.isReady("qwen:0.6b"));
  EXPECT_EQ(manager.file("qwen:0.6b"), folder.path() / "Models/Refinement/qwen.gguf");
  // Changed behind our back: not ready from that moment on.
  write("Models/Refinement/qwen.gguf", "hellO");
  EXPECT_FALSE(manager.isReady("qwen:0.6b"));
  settle();
  EXPECT_EQ(manager.state("qwen:0.6b"), ModelFileState::damaged);
  EXPECT_FALSE(manager.isReady("qwen:4b")) << "not in the list";
}

TEST_F(SmartModels, EveryModelOfTheSettingsHasAFile) {
  const SmartModelManager shipped(executor, std::make_shared<ModelInventory>(folder.path()));
  for (const auto model : allCases<SmartLocalModel>()) {
    const auto description = describe(model);
    const auto identifier = shipped.identifierFor(description.repository, description.file);
    EXPECT_NE(identifier, "") << description.displayName;
    EXPECT_EQ(shipped.file(identifier).filename(), description.file);
  }
}

TEST_F(SmartModels, TheRussianCorrectorNeedsAllOfItsFiles) {
  write("Models/Refinement/sage/vocab.json", "abc");
  settle();
  EXPECT_FALSE(manager.isSageReady());
  write("Models/Refinement/sage/merges.txt", "hello");
  settle();
  EXPECT_TRUE(manager.isSageReady());
  EXPECT_EQ(manager.sageFolder(), folder.path() / "Models/Refinement/sage");
}

}  // namespace
