#include "Sentinel.h"
#include "Support/FileBytes.h"
#include "Support/ProcessMemory.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Pieces of the sentence: freed memory is often overwritten in part.
std::vector<std::string> pieces() {
  constexpr std::size_t pieceSize = 12;
  const auto sentence = sentinelSentence();
  std::vector<std::string> all;
  for (std::size_t start = 0; start + pieceSize <= sentence.size(); start += pieceSize) {
    all.push_back(sentence.substr(start, pieceSize));
  }
  return all;
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
class Witness {
 public:
  explicit Witness(const std::filesystem::path& folder) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0) return;
    process_ = ::fork();
    if (process_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      ::dup2(input[0], STDIN_FILENO);
      ::dup2(output[1], STDOUT_FILENO);
      ::execl(MURMEL_STORAGE_WITNESS, MURMEL_STORAGE_WITNESS, folder.c_str(), nullptr);
      ::_exit(127);
    }
    ::close(input[0]);
    ::close(output[1]);
    input_ = input[1];
    output_ = ::fdopen(output[0], "r");
  }
  ~Witness() {
    ::close(input_);
    std::fclose(output_);
    if (process_ > 0) ::waitpid(process_, nullptr, 0);
  }

  std::string stage() {
    std::array<char, 64> line{};
    return std::fgets(line.data(), line.size(), output_) == nullptr ? "(ended)" : line.data();
  }
  void goOn() { (void)!::write(input_, "\n", 1); }
  int wait() {
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    return status;
  }

  /// How often pieces of the sentence are in the memory of the process.
  [[nodiscard]] int occurrencesInMemory() const { return test::ProcessMemory(process_).count(pieces()); }

 private:
  pid_t process_ = -1;
  int input_ = -1;
  FILE* output_ = nullptr;
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
  ASSERT_EQ(witness.stage(), "kept\n");
  EXPECT_TRUE(std::filesystem::exists(folder / "history.sealed"));
  EXPECT_GE(witness.occurrencesInMemory(), 5) << "the search finds what is there";
  EXPECT_EQ(occurrencesOnDisk(session), 0);

  witness.goOn();
  ASSERT_EQ(witness.stage(), "deleted\n");
  EXPECT_EQ(witness.occurrencesInMemory(), 0);
  EXPECT_EQ(occurrencesOnDisk(session), 0);

  witness.goOn();
  const int status = witness.wait();
  ASSERT_TRUE(WIFSIGNALED(status)) << status;
  std::string core;
  for (const auto& name : namesIn(folder)) {
    if (name.starts_with("core")) core = name;
  }
  if (core.empty()) GTEST_SKIP() << "this system keeps no core dumps in the working folder";
  EXPECT_GT(std::filesystem::file_size(folder / core), 100'000U);
  EXPECT_EQ(occurrencesOnDisk(session), 0);
}
