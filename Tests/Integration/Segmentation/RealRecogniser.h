#pragma once

#include "Audio/AudioCaptureService.h"
#include "Foundation/Async/Clock.h"
#include "Models/ModelManager.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Recognition/FluidAudioProvider.h"
#include "Segmentation/IncrementalDictationSession.h"
#include "Support/Awaiting.h"
#include "Support/BuildPaths.h"
#include "Support/SessionBench.h"
#include "Support/Testing.h"

#include <atomic>

namespace murmel {

/// Launches workers and knows the last one.
class KillableLauncher final : public ProcessLauncher {
 public:
  std::expected<std::unique_ptr<ChildProcess>, std::string> launch(const ProcessRequest& request) override {
    auto child = launcher_.launch(request);
    if (child) last_ = (*child)->identifier();
    return child;
  }
  /// Kills the last worker, once. False when there is none alive that was not killed yet.
  bool kill() {
    const auto process = last_.exchange(0);
    return process > 0 && ::kill(process, SIGKILL) == 0;
  }

 private:
  LinuxProcessLauncher launcher_;
  std::atomic<pid_t> last_ = 0;
};

/// Counts the requests.
class CountedProvider final : public TranscriptionProvider {
 public:
  explicit CountedProvider(std::unique_ptr<TranscriptionProvider> provider)
      : provider_(std::move(provider)) {}
  [[nodiscard]] const std::string& providerID() const override { return provider_->providerID(); }
  Task<Result<TranscriptionResult>> transcribe(CapturedAudio audio,
                                               std::optional<std::string> language) override {
    ++requests_;
    return provider_->transcribe(std::move(audio), std::move(language));
  }
  [[nodiscard]] int requests() const { return requests_; }

 private:
  std::unique_ptr<TranscriptionProvider> provider_;
  int requests_ = 0;
};

/// Dictates into an incremental session with the application's own speech worker. Segments are cut in no
/// time; recognition takes its time.
class RealRecogniser : public ::testing::Test {
 protected:
  void SetUp() override {
    auto made = FluidAudioProvider::create({executor, clock, launcher}, {resourcesFolder(), "test"}, models,
                                           ExecutableRuntimePolicy(resourcesFolder(), std::nullopt, nullptr));
    ASSERT_TRUE(made.has_value()) << made.error().localizedDescription();
    provider = std::make_shared<CountedProvider>(*std::move(made));
  }

  /// `whileRecognising` is called all the time.
  Result<DictationSessionResult> dictate(
      const PendingCapturedAudio& audio, double target,
      const std::function<void()>& whileRecognising = [] {}) {
    DictationSessionConfiguration configuration;
    configuration.transcription = provider;
    configuration.targetSegmentSeconds = target;
    const auto session =
        IncrementalDictationSessionFactory(
            {executor, clock, Logger(log, "test", "incremental-stages"), &convertForRecognition})
            .make(configuration);
    session->append({audio.monoSamples, audio.sampleRate});
    Awaiting<Result<DictationSessionResult>> finishing(session->finish());
    const auto limit = clock.now() + std::chrono::minutes(20);
    auto tick = clock.now();
    while (!finishing.done()) {
      executor.waitUntil([&] {
        whileRecognising();
        return finishing.done() || clock.now() - tick >= std::chrono::milliseconds(20);
      });
      // The pauses between the tries run on virtual time.
      executor.advance(clock.now() - tick);
      tick = clock.now();
      if (tick > limit) throw std::runtime_error("the session hangs");
    }
    figures = session->diagnostics();
    return *finishing;
  }

  ManualExecutor executor;
  SystemClock clock;
  KillableLauncher launcher;
  ModelManager models{executor};
  std::shared_ptr<CountedProvider> provider;
  MemoryLogSink log;
  DictationDiagnostics figures;
};

}  // namespace murmel
