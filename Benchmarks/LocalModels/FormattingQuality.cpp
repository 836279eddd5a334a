// What a language model makes of recognised texts: one a line on standard input, each with its refined form
// on standard output, or as it was where the model's answer is refused. usage: formatting_quality
// LLAMA_SERVER MODEL.gguf SECONDS < LINES

#include "Foundation/Async/Clock.h"
#include "LocalModels/QwenLocalRefinementProvider.h"
#include "LocalModels/QwenServerPool.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Refinement/BoundedRefinementProvider.h"
#include "Support/Awaiting.h"
#include "Support/OneModel.h"
#include "Support/Refining.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <iostream>

using namespace murmel;

int main(int count, char** arguments) {
  constexpr int expectedCount = 4;
  if (count != expectedCount) return EXIT_FAILURE;
  const TemporaryFolder folder;
  const OneModel files(arguments[2]);
  ManualExecutor executor;
  SystemClock clock;
  LinuxProcessLauncher launcher;
  QwenServerLimits limits;
  limits.asking.request = std::chrono::seconds(std::atoi(arguments[3]));
  QwenServerPool pool({executor, clock, launcher}, files,
                      {.applicationIdentifier = "quality",
                       .temporaryDirectory = folder.path(),
                       .runtime = {arguments[1], [](const std::filesystem::path&) { return true; }},
                       .limits = limits});
  const auto server = pool.server(SmartLocalModel::qwen06);
  BoundedRefinementProvider provider(
      std::make_unique<QwenLocalRefinementProvider>(server, /*prewarmed=*/true));
  for (std::string line; std::getline(std::cin, line);) {
    server->startIfNeeded();
    executor.waitUntil([&] { return server->preparation() != ModelSupervisor::Preparation::preparing; });
    Awaiting<Result<std::string>> asking(refining(provider, line));
    // Longer than tests wait.
    while (!asking.done()) executor.waitUntil([&] { return asking.done(); });
    std::cout << asking->value_or(line) << std::endl;
  }
  return EXIT_SUCCESS;
}
