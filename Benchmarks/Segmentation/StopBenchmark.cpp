#include "Audio/AudioCaptureService.h"
#include "Foundation/Async/Timers.h"
#include "Models/ModelManager.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Platform/Qt/QtExecutor.h"
#include "Recognition/FluidAudioProvider.h"
#include "Segmentation/IncrementalDictationSession.h"
#include "Support/Awaiting.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

using namespace murmel;

namespace {

/// The recordings of pocketsphinx-testdata with pauses between them, again and again, at 16 kHz.
std::vector<float> naturalSpeech(double seconds) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator("/usr/share/pocketsphinx/test/data/librivox"))
    if (entry.path().extension() == ".wav") files.push_back(entry.path());
  std::ranges::sort(files);
  std::vector<float> samples;
  const auto most = static_cast<std::size_t>(seconds * recognitionSampleRate);
  while (!files.empty() && samples.size() < most) {
    for (const auto& path : files) {
      std::ifstream file(path, std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      constexpr std::size_t header = 44;
      for (std::size_t at = header; at + 1 < bytes.size(); at += 2) {
        const auto low = static_cast<std::uint8_t>(bytes[at]);
        const auto high = static_cast<std::uint8_t>(bytes[at + 1]);
        samples.push_back(static_cast<float>(static_cast<std::int16_t>(low | (high << 8))) / 32'768.0F);
      }
      samples.resize(samples.size() + recognitionSampleRate * 8 / 10);
    }
  }
  samples.resize(most);
  return samples;
}

class NoLog final : public LogSink {
  void write(LogLevel, std::string_view, std::string_view, std::string_view) override {}
};

/// Speaks in real time for so many seconds into the application's own worker; the time is that from the stop
/// to the text.
void waitAfterTheStop(benchmark::State& state) {
  int argumentCount = 0;
  const QCoreApplication application(argumentCount, nullptr);
  QtExecutor executor;
  SystemClock clock;
  NoLog log;
  LinuxProcessLauncher launcher;
  // The best engine that lies in the build: Whisper where its model has been fetched.
  const auto store = ModelManager::forStore(
      executor, std::make_shared<ModelInventory>("/nonexistent", MURMEL_RESOURCES_DIR));
  auto& models = *store;
  models.validate();
  while (models.state() == SpeechModelState::verifying)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  bool ready = false;
  auto made = FluidAudioProvider::create(
      {executor, clock, launcher}, {MURMEL_RESOURCES_DIR, "benchmark"}, models,
      ExecutableRuntimePolicy(MURMEL_RESOURCES_DIR, std::nullopt, nullptr), [&](bool) { ready = true; });
  if (!made) return state.SkipWithError("no recogniser");
  const std::shared_ptr<TranscriptionProvider> provider = *std::move(made);
  auto runUntil = [&](auto condition) {
    while (!condition()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  };
  runUntil([&] { return ready; });
  const auto speech = naturalSpeech(static_cast<double>(state.range(0)));
  for (auto _ : state) {
    DictationSessionConfiguration configuration;
    configuration.transcription = provider;
    configuration.targetSegmentSeconds = static_cast<double>(state.range(1));
    const auto session =
        IncrementalDictationSessionFactory(
            {executor, clock, Logger(log, "benchmark", "incremental-stages"), &convertForRecognition})
            .make(configuration);
    std::size_t spoken = 0;
    const RepeatingTimer pump(executor, std::chrono::seconds(1), [&] {
      const auto begin = speech.begin() + static_cast<std::ptrdiff_t>(spoken);
      const auto count = std::min<std::size_t>(recognitionSampleRate, speech.size() - spoken);
      session->append({{begin, begin + static_cast<std::ptrdiff_t>(count)}, recognitionSampleRate});
      spoken += count;
    });
    runUntil([&] { return spoken == speech.size(); });
    const auto stop = clock.now();
    Awaiting<Result<DictationSessionResult>> finishing(session->finish());
    runUntil([&] { return finishing.done(); });
    state.SetIterationTime(durationToSeconds(clock.now() - stop));
    if (!finishing->has_value()) state.SkipWithError("not recognised");
    state.counters["behind_s"] = session->diagnostics().maximumBacklog;
  }
}
BENCHMARK(waitAfterTheStop)
    ->ArgsProduct({{10, 60, 600}, {3, 15}})
    ->ArgNames({"seconds", "target"})
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
