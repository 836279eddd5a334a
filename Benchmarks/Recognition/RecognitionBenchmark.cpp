// The road of a recording to the speech worker and back, without recognition. The argument is seconds of
// audio. Figure to reach: 60 s of audio there and back within 15 ms.

#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Recognition/SpeechWorkerClient.h"
#include "Recognition/WorkerRequest.h"
#include "Workers/SpeechWorker/TranscriptionRequest.h"

#include <cstring>
#include <random>

#include <benchmark/benchmark.h>

namespace {

using namespace murmel;

CapturedAudio recording(std::int64_t seconds) {
  CapturedAudio audio;
  audio.pcm16LE.resize(static_cast<std::size_t>(seconds) * 2 * recognitionSampleRate);
  std::mt19937 random(1);
  for (auto& byte : audio.pcm16LE) byte = static_cast<std::uint8_t>(random());
  return audio;
}

void countBytes(benchmark::State& state, const CapturedAudio& audio) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(audio.pcm16LE.size()));
}

void plainCopy(benchmark::State& state) {
  const auto audio = recording(state.range(0));
  std::vector<std::uint8_t> copy(audio.pcm16LE.size());
  for (auto _ : state) {
    std::memcpy(copy.data(), audio.pcm16LE.data(), copy.size());
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
  countBytes(state, audio);
}

void encodeRequest(benchmark::State& state) {
  const auto audio = recording(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(encodeWorkerRequest(1, audio, "ru"));
  countBytes(state, audio);
}

/// What the same request costs when the serializer sees the audio.
void encodeRequestGenerically(benchmark::State& state) {
  const auto audio = recording(state.range(0));
  for (auto _ : state) {
    const Json object = {
        {"id", 1}, {"sample_rate", 16'000}, {"pcm_s16le_base64", base64::encoded(audio.pcm16LE)}};
    benchmark::DoNotOptimize(jsonText(object));
  }
  countBytes(state, audio);
}

void decodeRequest(benchmark::State& state) {
  const auto audio = recording(state.range(0));
  const auto line = *encodeWorkerRequest(1, audio, "ru");
  for (auto _ : state) benchmark::DoNotOptimize(worker::TranscriptionRequest::decode(line));
  countBytes(state, audio);
}

void roundTrip(benchmark::State& state) {
  const auto audio = recording(state.range(0));
  const SystemClock clock;
  LinuxProcessLauncher launcher;
  WorkerCancellation cancellation;
  SpeechWorkerConfiguration configuration{
      .workerURL = MURMEL_ECHO_WORKER,
      .modelURL = "/",
      .modelIntegrityCheck = [](const auto&) { return true; },
      .mayExecute = [](const auto&) { return true; },
      .runningProcessIntegrityCheck = [](const auto&, const auto&) { return true; },
      .limits = {},
  };
  SpeechWorkerClient client(std::move(configuration), "benchmark", launcher, clock, cancellation);
  if (!client.load()) return state.SkipWithError("no worker");
  for (auto _ : state) {
    if (!client.transcribe(audio, std::nullopt, {})) return state.SkipWithError("no answer");
  }
  countBytes(state, audio);
}

void startWorker(benchmark::State& state) {
  LinuxProcessLauncher launcher;
  for (auto _ : state) {
    auto child = launcher.launch({MURMEL_ECHO_WORKER, {}, {}});
    if (!child) return state.SkipWithError("no worker");
    state.PauseTiming();
    child->reset();
    state.ResumeTiming();
  }
}

BENCHMARK(plainCopy)->Arg(60)->Arg(600)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeRequest)->Arg(60)->Arg(600)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeRequestGenerically)->Arg(60)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeRequest)->Arg(60)->Arg(600)->Unit(benchmark::kMillisecond);
BENCHMARK(roundTrip)->Arg(1)->Arg(60)->Arg(600)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(startWorker)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
