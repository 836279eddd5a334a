#include "Contract/ProcessLauncher/ChildOutput.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Support/FileBytes.h"
#include "Support/Forks.h"
#include "Support/Pipe.h"
#include "Support/ProcessTraces.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

class LinuxProcess : public ::testing::Test {
 protected:
  std::unique_ptr<ChildProcess> launch(Strings arguments, Strings environment = {}) {
    auto launched = launcher.launch({MURMEL_CONTRACT_CHILD, std::move(arguments), std::move(environment)});
    EXPECT_TRUE(launched.has_value()) << launched.error();
    return *std::move(launched);
  }
  std::string launchError(const std::filesystem::path& executable) {
    const auto launched = launcher.launch({executable, {}, {}});
    return launched ? "none" : launched.error();
  }
  void TearDown() override {
    EXPECT_FALSE(hasChildren());
    EXPECT_EQ(openDescriptorCount(), descriptorsBefore_);
  }

  LinuxProcessLauncher launcher;
  TemporaryFolder folder;

 private:
  std::size_t descriptorsBefore_ = openDescriptorCount();
};

}  // namespace

TEST_F(LinuxProcess, GivesAChildNothingOfOurs) {
  // What would be inherited: descriptors, a variable, an ignored signal and a blocked one.
  const int inheritable = ::open("/dev/zero", O_RDONLY);
  const int farAway = ::fcntl(inheritable, F_DUPFD, 1'000);
  ::setenv("MURMEL_TEST_SECRET", "1", 1);
  const auto before = std::signal(SIGUSR2, SIG_IGN);
  sigset_t blocked;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGUSR1);
  ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);

  const auto child = launch({"report"}, {"ONE=1"});
  Strings facts;
  ChildOutput output(child->output());
  for (auto line = output.line(); line && *line != "end"; line = output.line()) facts.push_back(*line);

  ::pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
  std::signal(SIGUSR2, before);
  ::unsetenv("MURMEL_TEST_SECRET");
  ::close(farAway);
  ::close(inheritable);

  EXPECT_TRUE(contains(facts, {"no new privileges 1", "fd 0 pipe", "fd 1 pipe", "fd 2 /dev/null", "env ONE=1",
                               "pdeathsig 9", "core 1", "session leader 1", "umask 77", "folder /"}));
  const auto count = [&](std::string_view kind) {
    return std::ranges::count_if(facts, [&](const std::string& fact) { return fact.starts_with(kind); });
  };
  EXPECT_EQ(count("fd "), 3);
  EXPECT_EQ(count("env "), 1);
  EXPECT_EQ(count("signal "), 0);
  const auto score = [](pid_t process) {
    return std::stoi(contentsOf("/proc/" + std::to_string(process) + "/oom_score_adj"));
  };
  EXPECT_EQ(score(child->identifier()), std::min(score(::getpid()) + 100, 1'000));
}

TEST_F(LinuxProcess, LetsAChildSayGoodbye) {
  const auto child = launch({"polite"});
  ChildOutput output(child->output());
  ASSERT_EQ(output.line(), "here");
  child->terminate(1h);
  EXPECT_EQ(output.line(), "bye");
}

TEST_F(LinuxProcess, TerminatesFromAnotherThreadWhileOneWaits) {
  const auto child = launch({"stubborn"});
  ChildOutput output(child->output());
  ASSERT_EQ(output.line(), "here");
  const std::jthread other([&] { child->terminate(1ms); });
  EXPECT_EQ(output.line(), std::nullopt);
  while (child->isRunning()) std::this_thread::yield();
}

TEST_F(LinuxProcess, LeavesNoZombieOfAChildThatEndedByItself) {
  const auto child = launch({"exit", "3"});
  while (child->isRunning()) std::this_thread::yield();
  EXPECT_FALSE(hasChildren());
}

TEST_F(LinuxProcess, StartsOnlyPrograms) {
  const auto script = folder.path() / "script";
  std::ofstream(script) << "#!/bin/sh\necho hello\n";
  std::filesystem::permissions(script, std::filesystem::perms::owner_all);
  const auto fifo = folder.path() / "fifo";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0700), 0);
  const auto truncated = folder.path() / "truncated";
  std::ofstream(truncated) << "\177ELF";
  std::filesystem::permissions(truncated, std::filesystem::perms::owner_all);
  const auto unmarked = folder.path() / "unmarked";
  std::filesystem::copy_file(MURMEL_CONTRACT_CHILD, unmarked);
  std::filesystem::permissions(unmarked, std::filesystem::perms::owner_read);

  EXPECT_EQ(launchError(script), "the executable is not a program");
  EXPECT_EQ(launchError(fifo), "the executable is not a regular file");
  EXPECT_EQ(launchError(folder.path()), "the executable is not a regular file");
  EXPECT_TRUE(contains(launchError(truncated), "cannot execute the program: "));
  EXPECT_EQ(launchError(unmarked), "cannot execute the program: Permission denied");
  EXPECT_FALSE(hasChildren());
}

TEST_F(LinuxProcess, RecognisesThatTheFileWasExchanged) {
  const auto program = folder.path() / "program";
  std::filesystem::copy_file(MURMEL_CONTRACT_CHILD, program);
  auto launched = launcher.launch({program, {"stubborn"}, {}});
  ASSERT_TRUE(launched.has_value()) << launched.error();
  const auto& child = **launched;
  const auto exchanged = folder.path() / "other";
  std::filesystem::copy_file(MURMEL_CONTRACT_CHILD, exchanged);
  std::filesystem::rename(exchanged, program);
  struct stat now {};
  ASSERT_EQ(::stat(program.c_str(), &now), 0);
  EXPECT_EQ(child.runningIdentity(), child.launchedIdentity());
  EXPECT_NE(child.launchedIdentity().inode, now.st_ino);
}

TEST_F(LinuxProcess, DiesWithTheThreadThatLaunchedIt) {
  std::unique_ptr<ChildProcess> child;
  std::thread([&] {
    child = launch({"stubborn"});
    EXPECT_EQ(ChildOutput(child->output()).line(), "here");
  }).join();
  EXPECT_EQ(ChildOutput(child->output()).line(), std::nullopt) << "it is still there";
}

TEST_F(LinuxProcess, DiesWithTheApplication) {
  const Pipe pipe;
  ASSERT_TRUE(succeedsInAFork([&] {
    // Left behind on purpose, as by a crash.
    auto* const child = launch({"stubborn"}).release();
    const pid_t number = child->identifier();
    return ChildOutput(child->output()).line() == "here" &&
           ::write(pipe.writeEnd.get(), &number, sizeof number) == sizeof number;
  }));
  pid_t orphan = 0;
  ASSERT_EQ(::read(pipe.readEnd.get(), &orphan, sizeof orphan), static_cast<ssize_t>(sizeof orphan));
  while (!hasEnded(orphan)) std::this_thread::yield();
}

TEST_F(LinuxProcess, StartsAChildWhenTheStandardDescriptorsAreFree) {
  EXPECT_TRUE(succeedsInAFork([&] {
    for (const int descriptor : {0, 1, 2}) ::close(descriptor);
    const auto child = launch({"echo", "hello"});
    return ChildOutput(child->output()).line() == "hello" && writeAll(child->input(), "there\n");
  }));
}
