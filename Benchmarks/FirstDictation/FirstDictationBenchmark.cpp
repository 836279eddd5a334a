#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Platform/Qt/QtExecutor.h"
#include "Support/DictationRig.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iterator>
#include <vector>

#include <benchmark/benchmark.h>

using namespace murmel;
using namespace murmel::test;

namespace {

constexpr int sampleRate = 16'000;

/// Natural speech of so many seconds: the recordings of pocketsphinx-testdata one after the other, with
/// pauses.
std::vector<float> naturalSpeech(double seconds) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator("/usr/share/pocketsphinx/test/data/librivox"))
    if (entry.path().extension() == ".wav") files.push_back(entry.path());
  std::ranges::sort(files);
  std::vector<float> samples;
  const auto wanted = static_cast<std::size_t>(seconds * sampleRate);
  while (!files.empty() && samples.size() < wanted) {
    for (const auto& path : files) {
      std::ifstream file(path, std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      constexpr std::size_t header = 44;
      for (std::size_t at = header; at + 1 < bytes.size(); at += 2) {
        const auto low = static_cast<std::uint8_t>(bytes[at]);
        const auto high = static_cast<std::uint8_t>(bytes[at + 1]);
        samples.push_back(static_cast<float>(static_cast<std::int16_t>(low | (high << 8))) / 32'768.0F);
      }
      samples.resize(samples.size() + sampleRate * 8 / 10);
    }
  }
  samples.resize(wanted);
  return samples;
}

/// Dictations on the application's own loop with a worker that answers at once; `seconds` of speech each.
class Bench {
 public:
  Bench(double seconds, bool inRealTime)
      : recognition_(executor_, clock_, launcher_, trustedWorker(MURMEL_ECHO_WORKER, folder_.path())),
        rig(executor_, clock_, recognition_, naturalSpeech(seconds), inRealTime) {
    dictate();  // the worker is started, the memory is there
  }

  /// Seconds from the last sample to the paste keys.
  double dictate() {
    const int before = rig.pastes;
    rig.coordinator.toggle();
    runUntil([&] { return rig.pastes > before && !rig.coordinator.state().isBusy(); });
    // The user copies something: the next dictation does not have to bring the clipboard back first.
    rig.general.writeByAnother(DictationRig::previousClipboard());
    runUntil([&] { return rig.isSettled(); });
    return durationToSeconds(rig.pastedAt - rig.stoppedAt);
  }

 private:
  static void runUntil(const std::function<bool()>& condition) {
    while (!condition()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  int argumentCount_ = 0;
  QCoreApplication application_{argumentCount_, nullptr};
  QtExecutor executor_;
  SystemClock clock_;
  TemporaryFolder folder_;
  LinuxProcessLauncher launcher_;
  WorkerRecognition recognition_;

 public:
  DictationRig rig;
};

/// From the end of a minute's samples to the text, with everything between but the recognition. Played as
/// fast as it can, all of it is still to be cut and sent at the stop; in real time only the rest is.
void minuteFromTheStopToTheText(benchmark::State& state) {
  Bench bench(60, state.range(0) != 0);
  bench.rig.settings.process = state.range(1) != 0;
  for (auto _ : state) state.SetIterationTime(bench.dictate());
}
BENCHMARK(minuteFromTheStopToTheText)
    ->ArgNames({"realTime", "whileRecording"})
    ->ArgsProduct({{0}, {0, 1}})
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(minuteFromTheStopToTheText)
    ->ArgNames({"realTime", "whileRecording"})
    ->Args({1, 1})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// From the stop to the paste keys, without recognition: five hundred short dictations in a row.
void stopToPaste(benchmark::State& state) {
  constexpr int dictations = 500;
  Bench bench(1, false);
  for (auto _ : state) {
    std::vector<double> times;
    for (int dictation = 0; dictation < dictations; ++dictation) times.push_back(bench.dictate());
    std::ranges::sort(times);
    state.SetIterationTime(times[dictations / 2]);
    state.counters["p99_ms"] = 1'000 * times[dictations * 99 / 100];
    state.counters["worst_ms"] = 1'000 * times.back();
  }
}
BENCHMARK(stopToPaste)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
