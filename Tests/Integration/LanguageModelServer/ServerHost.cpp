// An application of nothing but an inference server, to be killed. Arguments: the temporary directory, the
// executable, the model. Prints the server's process number when it is ready, and stays.

#include "Foundation/Async/Clock.h"
#include "LocalModels/QwenServerRun.h"
#include "Support/RoomyLauncher.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

using namespace murmel;

int main(int argumentCount, char** arguments) {
  constexpr int expectedCount = 4;
  if (argumentCount != expectedCount) return EXIT_FAILURE;
  const QwenServerConfiguration configuration{
      .executable = arguments[2],
      .model = arguments[3],
      .temporaryDirectory = arguments[1],
      .mayExecute = [](const std::filesystem::path&) { return true; },
      .limits = {},
  };
  RoomyLauncher launcher(configuration.model.parent_path());
  const SystemClock clock;
  const WorkerCancellation never;
  QwenServerRun run(configuration, launcher, clock, never);
  int server = 0;
  if (run.start()) std::ifstream("/proc/thread-self/children") >> server;
  std::printf("%d\n", server);
  std::fflush(stdout);
  while (true) ::pause();
}
