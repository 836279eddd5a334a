#include "Foundation/Async/Clock.h"
#include "LocalModels/QwenServerRun.h"
#include "Platform/Fake/FakeProcessLauncher.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

TEST(QwenServerRun, EndsAProcessThatRunsAnotherFileThanTheOneThatWasChecked) {
  const TemporaryFolder folder;
  FakeProcessLauncher launcher;
  launcher.install("/runtime/llama-server", [](FakeChildSide& side) { side.readLine(); });
  launcher.exchangeAfterLaunch("/runtime/llama-server");
  const QwenServerConfiguration configuration{
      .executable = "/runtime/llama-server",
      .model = "/model.gguf",
      .temporaryDirectory = folder.path(),
      .mayExecute = [](const std::filesystem::path&) { return true; },
      .limits = {},
  };
  const SystemClock clock;
  const WorkerCancellation never;
  {
    QwenServerRun run(configuration, launcher, clock, never);
    EXPECT_EQ(run.start().error(), "running inference server identity validation failed");
    ASSERT_EQ(launcher.requests().size(), 1U);
  }
  EXPECT_EQ(launcher.childCount(), 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}
