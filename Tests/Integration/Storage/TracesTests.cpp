#include "Sentinel.h"
#include "Support/ChildProgram.h"
#include "Support/FileBytes.h"
#include "Support/ProcessMemory.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

std::vector<std::string> pieces() {
  return test::piecesOfText(sentinelSentence());
}

int occurrences(std::string_view haystack) {
  int count = 0;
  for (const auto& piece : pieces()) {
    for (auto at = haystack.find(piece); at != std::string_view::npos; at = haystack.find(piece, at + 1))
      ++count;
  }
  return count;
}

int occurrencesOnDisk(const std::filesystem::path& folder) {
  int count = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file() && !entry.is_symlink()) count += occurrences(contentsOf(entry.path()));
  }
  return count;
}

/// The program under test, with its input and output.
class Witness : public test::ChildProgram {
 public:
  explicit Witness(const std::filesystem::path& folder) : ChildProgram({MURMEL_STORAGE_WITNESS, folder}) {}
  void goOn() { (void)!::write(input(), "\n", 1); }
  /// How often pieces of the sentence are in the memory of the process.
  [[nodiscard]] int occurrencesInMemory() const { return test::ProcessMemory(identifier()).count(pieces()); }
};

}  // namespace

TEST(Traces, NothingOfADeletedSentenceIsLeftOnDiskInMemoryOrInACoreDump) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's shadow is too large to search";
#endif
  const std::filesystem::path session = std::getenv("MURMEL_SESSION_DIRECTORY");
  const auto folder = session / "traces";
  std::filesystem::create_directories(folder);
  Witness witness(folder);
  ASSERT_EQ(witness.line(), "kept");
  EXPECT_TRUE(std::filesystem::exists(folder / "history.sealed"));
  EXPECT_GE(witness.occurrencesInMemory(), 5) << "the search finds what is there";
  EXPECT_EQ(occurrencesOnDisk(session), 0);

  witness.goOn();
  ASSERT_EQ(witness.line(), "deleted");
  EXPECT_EQ(witness.occurrencesInMemory(), 0);
  EXPECT_EQ(occurrencesOnDisk(session), 0);

  witness.goOn();
  witness.end(0);
  ASSERT_EQ(witness.exitStatus(), 128 + SIGABRT);
  std::string core;
  for (const auto& name : namesIn(folder)) {
    if (name.starts_with("core")) core = name;
  }
  if (core.empty()) GTEST_SKIP() << "this system keeps no core dumps in the working folder";
  EXPECT_GT(std::filesystem::file_size(folder / core), 100'000U);
  EXPECT_EQ(occurrencesOnDisk(session), 0);
}
