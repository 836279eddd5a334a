// What a refinement costs beside the model's own time: forty words to a server that answers at once, and back
// through the projection and the safety gate. Figure to reach: under 2 ms.

#include "LocalModels/QwenChat.h"
#include "LocalModels/QwenLocalRefinementProvider.h"
#include "LocalModels/QwenServerPool.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Support/Awaiting.h"
#include "Support/OneModel.h"
#include "Support/Refining.h"
#include "Support/TemporaryFolder.h"

#include <fstream>

#include <benchmark/benchmark.h>

namespace {

using namespace murmel;

std::string fortyWords() {
  std::string text = "when";
  for (int word = 1; word < 40; ++word) text += word % 7 == 0 ? " twenty3" : " somebody";
  return text;
}

void refinement(benchmark::State& state) {
  const TemporaryFolder folder;
  const OneModel files(folder.path() / "model.gguf");
  std::ofstream(folder.path() / "model.gguf") << "answer format\n";
  ManualExecutor executor;
  SystemClock clock;
  LinuxProcessLauncher launcher;
  QwenServerPool pool({executor, clock, launcher}, files,
                      {.applicationIdentifier = "benchmark",
                       .temporaryDirectory = folder.path(),
                       .runtime = {MURMEL_STUB_SERVER, [](const std::filesystem::path&) { return true; }},
                       .limits = {}});
  const auto server = pool.server(SmartLocalModel::qwen06);
  server->startIfNeeded();
  executor.waitUntil([&] { return server->preparation() != ModelSupervisor::Preparation::preparing; });
  QwenLocalRefinementProvider provider(pool.server(SmartLocalModel::qwen06), /*prewarmed=*/false);
  const auto text = fortyWords();
  for (auto _ : state) {
    Awaiting<Result<std::string>> asking(refining(provider, text));
    executor.waitUntil([&] { return asking.done(); });
    if (!*asking) return state.SkipWithError("refused");
  }
}

void projectionAndGate(benchmark::State& state) {
  const auto text = fortyWords();
  const auto answer = "W" + text.substr(1) + ".";
  for (auto _ : state) benchmark::DoNotOptimize(QwenLocalRefinementProvider::projected(text, answer));
}

void requestBody(benchmark::State& state) {
  const auto text = fortyWords();
  for (auto _ : state) benchmark::DoNotOptimize(QwenChat::requestBody(text));
}

BENCHMARK(refinement)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(projectionAndGate)->Unit(benchmark::kMicrosecond);
BENCHMARK(requestBody)->Unit(benchmark::kMicrosecond);

}  // namespace
