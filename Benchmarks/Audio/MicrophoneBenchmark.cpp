// How long a microphone takes to begin and to end, on a real sound server.

#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Support/Awaiting.h"

#include <chrono>
#include <utility>

#include <benchmark/benchmark.h>

using namespace murmel;

namespace {

using Outcome = std::expected<AudioFormat, AudioInputError>;

/// From the request to a recording that has its first fragment, and from the stop to the last one.
template <bool measureStart>
void microphone(benchmark::State& state) {
  ManualExecutor executor;
  PulseAudioInput input(executor, {"Murmel benchmark", std::nullopt});
  for (auto _ : state) {
    const auto begin = std::chrono::steady_clock::now();
    Awaiting<Outcome> starting(input.start([](auto, auto) {}, [] {}));
    if (!executor.waitUntil([&] { return starting.done(); }) || !starting->has_value()) {
      state.SkipWithError("there is no sound server with a source");
      return;
    }
    const auto begun = std::chrono::steady_clock::now();
    input.stop();
    const auto end = std::chrono::steady_clock::now();
    const auto passed = measureStart ? begun - begin : end - begun;
    state.SetIterationTime(std::chrono::duration<double>(passed).count());
  }
}

void startToFirstFragment(benchmark::State& state) {
  microphone<true>(state);
}

void stopToLastSample(benchmark::State& state) {
  microphone<false>(state);
}

}  // namespace

BENCHMARK(startToFirstFragment)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(stopToLastSample)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
