// What a minute of audio costs on its way from the device to the recogniser, beside a plain copy of the
// memory.

#include "Audio/AudioCaptureService.h"

#include <cmath>
#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

using namespace murmel;

namespace {

constexpr std::size_t seconds = 60;

/// Something like a voice: no silence, no clipping.
std::vector<float> minute(std::size_t rate, std::size_t channels = 1) {
  std::vector<float> samples(seconds * rate * channels);
  for (std::size_t index = 0; index < samples.size(); ++index)
    samples[index] = 0.4F * std::sin(static_cast<float>(index % 4'801) * 0.01F);
  return samples;
}

void copyMinute(benchmark::State& state) {
  const auto samples = minute(static_cast<std::size_t>(state.range(0)));
  std::vector<float> copy(samples.size());
  for (auto _ : state) {
    std::memcpy(copy.data(), samples.data(), samples.size() * sizeof(float));
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(samples.size() * sizeof(float)));
}

void resampleMinute(benchmark::State& state) {
  const auto rate = static_cast<double>(state.range(0));
  const auto samples = minute(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    PrivateVector<float> input(samples.begin(), samples.end());
    state.ResumeTiming();
    benchmark::DoNotOptimize(
        AudioCaptureService::resample(std::move(input), rate, recognitionSampleRate).data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(samples.size() * sizeof(float)));
}

void encodeMinute(benchmark::State& state) {
  const auto samples = minute(recognitionSampleRate);
  for (auto _ : state) benchmark::DoNotOptimize(AudioCaptureService::encodePCM16LE(samples).data());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(samples.size() * sizeof(float)));
}

/// The audio thread's work for a minute of fragments of 20 ms, handed over once a second.
void appendMinute(benchmark::State& state) {
  constexpr std::size_t rate = 48'000;
  constexpr std::size_t fragmentFrames = rate / 50;
  const auto channels = static_cast<std::size_t>(state.range(0));
  const auto samples = minute(rate, channels);
  const AudioFormat format{rate, static_cast<unsigned>(channels)};
  AudioTap tap;
  for (auto _ : state) {
    tap.reset();
    for (std::size_t fragment = 0; fragment < seconds * 50; ++fragment) {
      tap.append(std::span(samples).subspan(fragment * fragmentFrames * channels, fragmentFrames * channels),
                 format);
      if (fragment % 50 == 49) benchmark::DoNotOptimize(tap.takePending()->monoSamples.data());
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(samples.size() * sizeof(float)));
}

}  // namespace

BENCHMARK(copyMinute)->Arg(48'000)->Arg(16'000)->Unit(benchmark::kMillisecond);
BENCHMARK(resampleMinute)->Arg(48'000)->Arg(44'100)->Arg(8'000)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeMinute)->Unit(benchmark::kMillisecond);
BENCHMARK(appendMinute)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
