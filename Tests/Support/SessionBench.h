#pragma once

#include "Foundation/Async/Timers.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Segmentation/IncrementalDictationSession.h"
#include "Support/Awaiting.h"
#include "Support/MemoryLogSink.h"
#include "Support/ScriptedTranscriptionProvider.h"

namespace murmel {

/// Refines by a function of the test, in half a second of virtual time.
class ScriptedRefinementProvider final : public RefinementProvider {
 public:
  using Script = std::function<Result<std::string>(std::string)>;
  ScriptedRefinementProvider(Executor& executor, Script script)
      : executor_(executor), script_(std::move(script)) {}
  [[nodiscard]] const std::string& providerID() const override { return providerID_; }
  Task<Result<SpokenText>> refine(SpokenText text) override {
    auto wait = sleepFor(executor_, std::chrono::milliseconds(500));
    co_await wait;
    auto refined = script_(std::move(text).reveal());
    if (!refined) co_return std::unexpected(refined.error());
    co_return SpokenText(*std::move(refined));
  }

 private:
  Executor& executor_;
  Script script_;
  std::string providerID_ = "scripted";
};

/// An incremental session with a scripted recogniser, in virtual time.
class SessionBench {
 public:
  SessionBench() {
    provider = std::make_shared<ScriptedTranscriptionProvider>(
        executor, [this](const auto& request, std::size_t index) { return script(request, index); });
    configuration.transcription = provider;
    configuration.targetSegmentSeconds = 3;
  }

  /// The answers of the recogniser, in order, each after `takes`; then it answers with the request's number.
  void answer(std::vector<Result<std::string>> answers, Duration takes = {}) {
    script = [answers = std::move(answers), takes](const auto&, std::size_t index) {
      if (index < answers.size()) return ScriptedTranscriptionProvider::Answer{answers[index], takes};
      return ScriptedTranscriptionProvider::Answer{"w" + std::to_string(index), takes};
    };
  }

  void start() {
    auto convert = [this](PendingCapturedAudio audio) {
      converted.push_back(pcm(audio));
      return converted.back();
    };
    session = IncrementalDictationSessionFactory(
                  {executor, executor, Logger(log, "test", "incremental-stages"), convert})
                  .make(configuration);
  }

  /// Records in real time: a second of audio a second.
  void record(const PendingCapturedAudio& audio) {
    const auto second = static_cast<std::size_t>(audio.sampleRate);
    for (std::size_t at = 0; at < audio.monoSamples.size(); at += second) {
      const auto count = std::min(second, audio.monoSamples.size() - at);
      executor.advance(secondsToDuration(static_cast<double>(count) / audio.sampleRate));
      const auto begin = audio.monoSamples.begin() + static_cast<std::ptrdiff_t>(at);
      session->append({{begin, begin + static_cast<std::ptrdiff_t>(count)}, audio.sampleRate});
    }
  }

  Result<DictationSessionResult> finish() {
    Awaiting<Result<DictationSessionResult>> finishing(session->finish());
    for (int minute = 0; !finishing.done() && minute < 60; ++minute)
      executor.advance(std::chrono::minutes(1));
    if (!finishing.done()) throw std::logic_error("the session does not finish");
    return *finishing;
  }

  /// 16-bit samples of audio at 16 kHz.
  static CapturedAudio pcm(const PendingCapturedAudio& audio) {
    CapturedAudio converted;
    for (const float sample : audio.monoSamples) {
      const auto value = static_cast<std::uint16_t>(std::lround(std::clamp(sample, -1.0F, 1.0F) * 32'767));
      converted.pcm16LE.push_back(static_cast<std::uint8_t>(value & 0xFFU));
      converted.pcm16LE.push_back(static_cast<std::uint8_t>(value >> 8U));
    }
    return converted;
  }

  ManualExecutor executor;
  ScriptedTranscriptionProvider::Script script;
  std::shared_ptr<ScriptedTranscriptionProvider> provider;
  DictationSessionConfiguration configuration;
  test::MemoryLogSink log;
  std::vector<CapturedAudio> converted;
  std::unique_ptr<DictationSession> session;
};

}  // namespace murmel
