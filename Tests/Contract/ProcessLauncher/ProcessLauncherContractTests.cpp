#include "Contract/ProcessLauncher/ChildOutput.h"
#include "Platform/Fake/FakeProcessLauncher.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Support/ProcessTraces.h"
#include "Support/Testing.h"

namespace {

/// Both launchers know a program that echoes and one that does not listen.
class RealPrograms {
 public:
  LinuxProcessLauncher launcher;
  static ProcessRequest echo(Strings arguments = {}) {
    arguments.insert(arguments.begin(), "echo");
    return {MURMEL_CONTRACT_CHILD, std::move(arguments), {}};
  }
  static ProcessRequest stubborn() { return {MURMEL_CONTRACT_CHILD, {"stubborn"}, {}}; }
  static ProcessRequest missing() { return {"/nonexistent/program", {}, {}}; }
};

class FakePrograms {
 public:
  FakePrograms() {
    launcher.install("/echo", [](FakeChildSide& side) {
      for (const auto& argument : side.arguments()) side.write(argument + '\n');
      while (const auto line = side.readLine()) side.write(*line + '\n');
    });
    launcher.install("/stubborn", [](FakeChildSide& side) {
      side.write("here\n");
      while (side.readLine()) {
      }
    });
  }
  FakeProcessLauncher launcher;
  static ProcessRequest echo(Strings arguments = {}) { return {"/echo", std::move(arguments), {}}; }
  static ProcessRequest stubborn() { return {"/stubborn", {}, {}}; }
  static ProcessRequest missing() { return {"/nonexistent/program", {}, {}}; }
};

template <class Programs>
class ProcessLauncherContract : public ::testing::Test {
 protected:
  std::unique_ptr<ChildProcess> launch(const ProcessRequest& request) {
    auto launched = programs.launcher.launch(request);
    EXPECT_TRUE(launched.has_value()) << launched.error();
    return *std::move(launched);
  }
  void TearDown() override {
    EXPECT_FALSE(hasChildren());
    EXPECT_EQ(openDescriptorCount(), descriptorsBefore_);
  }

  Programs programs;

 private:
  std::size_t descriptorsBefore_ = openDescriptorCount();
};

using AllPrograms = ::testing::Types<RealPrograms, FakePrograms>;
TYPED_TEST_SUITE(ProcessLauncherContract, AllPrograms);

/// Waits for the end without asking for it.
void waitForEnd(ChildProcess& child) {
  while (ChildOutput(child.output()).line()) {
  }
  while (child.isRunning()) std::this_thread::yield();
}

}  // namespace

TYPED_TEST(ProcessLauncherContract, TalksToAChildThroughItsPipes) {
  const auto child =
      this->launch(this->programs.echo({"an argument", "", "--with=\"quotes\" and \u00fcmlaut"}));
  ChildOutput output(child->output());
  EXPECT_EQ(output.line(), "an argument");
  EXPECT_EQ(output.line(), "");
  EXPECT_EQ(output.line(), "--with=\"quotes\" and \u00fcmlaut");
  ASSERT_TRUE(writeAll(child->input(), "hello\n"));
  EXPECT_EQ(output.line(), "hello");
  EXPECT_TRUE(child->isRunning());
}

TYPED_TEST(ProcessLauncherContract, ClosingTheInputLetsAChildEnd) {
  const auto child = this->launch(this->programs.echo());
  ASSERT_TRUE(writeAll(child->input(), "last words"));
  child->closeInput();
  EXPECT_EQ(child->input(), -1);
  EXPECT_EQ(ChildOutput(child->output()).line(), "last words");
  waitForEnd(*child);
  EXPECT_FALSE(child->runningIdentity().has_value());
  child->terminate(1h);  // nothing to do: returns at once
}

TYPED_TEST(ProcessLauncherContract, KnowsWhatRunsAndWhatWasStarted) {
  const auto first = this->launch(this->programs.echo());
  const auto second = this->launch(this->programs.echo());
  EXPECT_EQ(first->runningIdentity(), first->launchedIdentity());
  EXPECT_EQ(first->launchedIdentity(), second->launchedIdentity());
  EXPECT_NE(first->identifier(), second->identifier());
}

TYPED_TEST(ProcessLauncherContract, EndsAChildThatDoesNotListen) {
  const auto child = this->launch(this->programs.stubborn());
  ASSERT_EQ(ChildOutput(child->output()).line(), "here");
  child->terminate(1ms);
  EXPECT_FALSE(child->isRunning());
  child->terminate(1ms);
}

TYPED_TEST(ProcessLauncherContract, EndsItsChildWithTheHandle) {
  auto child = this->launch(this->programs.stubborn());
  ASSERT_EQ(ChildOutput(child->output()).line(), "here");
  child.reset();
  EXPECT_FALSE(hasChildren());
}

TYPED_TEST(ProcessLauncherContract, SaysWhyNothingStarts) {
  EXPECT_EQ(this->programs.launcher.launch(this->programs.missing()).error(),
            "cannot open the executable: No such file or directory");
  auto relative = this->programs.echo();
  relative.executable = "echo";
  EXPECT_EQ(this->programs.launcher.launch(relative).error(), "the path of the executable is not absolute");
}
