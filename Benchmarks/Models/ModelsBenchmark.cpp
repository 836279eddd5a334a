// What the model store costs: at every start, and once after a model of full size has been installed.

#include "Models/ModelManager.h"
#include "Models/ModelStoreLayout.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <benchmark/benchmark.h>

namespace {

using namespace murmel;

constexpr std::uintmax_t modelSize = 668'757'119;  // Parakeet q8_0
const std::atomic<bool> notStopping = false;

/// A file of the model's size without blocks on the disk: reading it costs what reading a cached file costs.
std::filesystem::path sparseModel(const TemporaryFolder& folder) {
  const auto path = folder.path() / "model.bin";
  std::ofstream(path).close();
  std::filesystem::resize_file(path, modelSize);
  return path;
}

std::string digestOf(const std::filesystem::path& path) {
  FILE* output = ::popen(("openssl dgst -sha256 -r " + path.string()).c_str(), "r");
  char digest[65] = {};
  if (std::fscanf(output, "%64s", digest) != 1) std::abort();
  ::pclose(output);
  return digest;
}

void verifyModel(benchmark::State& state) {
  const TemporaryFolder folder;
  const auto path = sparseModel(folder);
  const auto digest = digestOf(path);
  for (auto _ : state) {
    ArtifactVerifier verifier;
    if (!verifier.verify({path, modelSize, digest}, notStopping)) state.SkipWithError("not verified");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * modelSize));
}
BENCHMARK(verifyModel)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

/// What it is measured against.
void openssl(benchmark::State& state) {
  const TemporaryFolder folder;
  const auto path = sparseModel(folder);
  for (auto _ : state) benchmark::DoNotOptimize(digestOf(path));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * modelSize));
}
BENCHMARK(openssl)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

/// The application's start with a model that was verified earlier: reads the memory, looks at the files.
void presenceAtStart(benchmark::State& state) {
  const TemporaryFolder folder;
  const auto path = sparseModel(folder);
  const auto digest = digestOf(path);
  const auto memory = folder.path() / verificationMemoryName;
  ManualExecutor executor;
  const std::vector<SpeechModel> models{{folder.path(), {{"model.bin", modelSize, digest}}}};
  ArtifactVerifier(memory).verify({path, modelSize, digest}, notStopping);
  for (auto _ : state) {
    ModelManager manager(executor, models, std::make_shared<ModelInventory>(folder.path()));
    manager.validate();
    if (manager.state() != SpeechModelState::ready) state.SkipWithError("not ready");
  }
}
BENCHMARK(presenceAtStart)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
