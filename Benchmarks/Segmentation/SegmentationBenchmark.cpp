#include "Audio/AudioCaptureService.h"
#include "Foundation/Async/Timers.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Segmentation/IncrementalDictationSession.h"
#include "Segmentation/PhrasePauseDetector.h"
#include "Support/Awaiting.h"
#include "Support/SoundTape.h"

#include <algorithm>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

using namespace murmel;

namespace {

SoundTape minuteOfPhrases(double rate) {
  SoundTape tape(rate);
  while (tape.seconds() < 60) tape.speech(4).noise(1);
  return tape;
}

/// `cpu_share` is the part of one core that the detection takes while somebody speaks.
void detection(benchmark::State& state) {
  const auto rate = static_cast<double>(state.range(0));
  const auto tape = minuteOfPhrases(rate);
  PhrasePauseDetector detector(rate);
  for (auto _ : state) benchmark::DoNotOptimize(detector.append(tape.samples()));
  state.counters["cpu_share"] = benchmark::Counter(
      tape.seconds(), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(detection)->Arg(16'000)->Arg(48'000)->Arg(192'000)->Unit(benchmark::kMillisecond);

/// Answers at once.
class InstantProvider final : public TranscriptionProvider {
 public:
  [[nodiscard]] const std::string& providerID() const override { return providerID_; }
  Task<Result<TranscriptionResult>> transcribe(CapturedAudio, std::optional<std::string>) override {
    TranscriptionResult result;
    result.text = SpokenText("words");
    co_return result;
  }

 private:
  std::string providerID_ = "instant";
};

class NoLog final : public LogSink {
  void write(LogLevel, std::string_view, std::string_view, std::string_view) override {}
};

double residentMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1'024;
  return 0;
}

/// An hour of speech at 48 kHz through cutting, conversion and requests, without recognition. `cpu_share` as
/// above; `growth_MB` is by how much the process is larger at most than after the first minute.
void hourOfDictation(benchmark::State& state) {
  constexpr double rate = 48'000;
  const auto tape = minuteOfPhrases(rate);
  NoLog log;
  double growth = 0;
  for (auto _ : state) {
    ManualExecutor executor;
    DictationSessionConfiguration configuration;
    configuration.transcription = std::make_shared<InstantProvider>();
    configuration.targetSegmentSeconds = static_cast<double>(state.range(0));
    const auto session =
        IncrementalDictationSessionFactory(
            {executor, executor, Logger(log, "benchmark", "incremental-stages"), &convertForRecognition})
            .make(configuration);
    double before = 0;
    for (int minute = 0; minute < 60; ++minute) {
      const auto& samples = tape.samples();
      constexpr auto second = static_cast<std::size_t>(rate);
      for (std::size_t at = 0; at < samples.size(); at += second) {
        const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(at);
        const auto count = static_cast<std::ptrdiff_t>(std::min(second, samples.size() - at));
        session->append({{begin, begin + count}, rate});
        executor.runUntilIdle();
      }
      if (minute == 0) before = residentMegabytes();
      growth = std::max(growth, residentMegabytes() - before);
    }
    Awaiting<Result<DictationSessionResult>> finishing(session->finish());
    executor.runUntilIdle();
    if (!finishing.done() || !finishing->has_value()) state.SkipWithError("the session did not finish");
  }
  state.counters["cpu_share"] = benchmark::Counter(
      60 * tape.seconds(), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.counters["growth_MB"] = growth;
}
BENCHMARK(hourOfDictation)->Arg(3)->Arg(15)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
