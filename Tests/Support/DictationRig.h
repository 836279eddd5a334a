#pragma once

#include "Audio/AudioCaptureService.h"
#include "Delivery/TextInsertionService.h"
#include "Dictation/DictationCoordinator.h"
#include "Dictation/SettingsTranscriptCleanUp.h"
#include "Platform/Fake/FakeAudioInput.h"
#include "Platform/Fake/FakeKeyboardPoster.h"
#include "Platform/Fake/FakeLanguageRecognizer.h"
#include "Platform/Fake/FakeMicrophoneAuthorization.h"
#include "Platform/Fake/FakePasteboard.h"
#include "Platform/Fake/FakeProcessMemory.h"
#include "Platform/Fake/FakeSecureInput.h"
#include "Platform/Fake/FakeSoundPlayer.h"
#include "Platform/Fake/FakeWorkspace.h"
#include "Platform/ProcessLauncher.h"
#include "Recognition/FluidAudioProvider.h"
#include "Segmentation/IncrementalDictationSession.h"
#include "Support/DictationFakes.h"
#include "Support/TemporaryFolder.h"

namespace murmel::test {

/// Recognises with a worker of the test's, started through a real launcher and kept.
class WorkerRecognition final : public TranscriptionProviderFactory {
 public:
  WorkerRecognition(Executor& executor, const Clock& clock, ProcessLauncher& launcher,
                    SpeechWorkerConfiguration configuration)
      : executor_(executor), clock_(clock), launcher_(launcher), configuration_(std::move(configuration)) {}

  Result<std::shared_ptr<TranscriptionProvider>> make(std::function<void(bool)> warmupCompletion) override {
    const FluidAudioProvider::Services services{executor_, clock_, launcher_};
    auto provider = std::make_shared<FluidAudioProvider>(services, "test", configuration_);
    provider->startWarmup(std::move(warmupCompletion));
    return provider;
  }

 private:
  Executor& executor_;
  const Clock& clock_;
  ProcessLauncher& launcher_;
  SpeechWorkerConfiguration configuration_;
};

inline SpeechWorkerConfiguration trustedWorker(std::filesystem::path worker, std::filesystem::path model) {
  return {
      .workerURL = std::move(worker),
      .modelURL = std::move(model),
      .modelIntegrityCheck = [](const std::filesystem::path&) { return true; },
      .mayExecute = [](const std::filesystem::path&) { return true; },
      .runningProcessIntegrityCheck = [](const ChildProcess&, const std::filesystem::path&) { return true; },
      .limits = {},
  };
}

/// A microphone that hears the same in each recording, in fragments of 20 ms: by the clock, or a second of
/// them between other jobs of the main thread.
class PlayedAudioInput final : public AudioInput {
 public:
  PlayedAudioInput(Executor& executor, Clock& clock, std::vector<float> samples, bool inRealTime)
      : executor_(executor), clock_(clock), samples_(std::move(samples)), inRealTime_(inRealTime) {
    samples_.resize((samples_.size() + fragment - 1) / fragment * fragment);
  }

  Task<std::expected<AudioFormat, AudioInputError>> start(
      FragmentHandler onFragment, std::move_only_function<void()> onConfigurationChange) override {
    heard_ = 0;
    startedAt_ = clock_.now();
    turn_ = executor_.after({}, [this] { takeTurn(); });
    co_return co_await microphone_.start(std::move(onFragment), std::move(onConfigurationChange));
  }
  void stop() override { microphone_.stop(); }

  std::function<void()> onEnd;  ///< after the last fragment

 private:
  static constexpr std::size_t fragment = 320;

  void takeTurn() {
    const auto elapsed = durationToSeconds(clock_.now() - startedAt_);
    const auto due = inRealTime_ ? static_cast<std::size_t>(elapsed * 50) * fragment : heard_ + 50 * fragment;
    for (; heard_ < std::min(due, samples_.size()); heard_ += fragment)
      microphone_.deliver(std::span(samples_).subspan(heard_, fragment));
    const bool isOver = heard_ == samples_.size() && microphone_.isRecording();
    turn_ =
        executor_.after(inRealTime_ && !isOver ? std::chrono::milliseconds(20) : Duration{}, [this, isOver] {
          if (isOver) {
            onEnd();
          } else {
            takeTurn();
          }
        });
  }

  Executor& executor_;
  Clock& clock_;
  std::vector<float> samples_;
  bool inRealTime_;
  FakeAudioInput microphone_{executor_, {recognitionSampleRate, 1}};
  std::size_t heard_ = 0;
  Instant startedAt_;
  Registration turn_;
};

/// A whole dictation: capture, coordinator, session, worker process and delivery are the application's own.
/// The microphone is played, the desktop a fake with one application in front that reads the clipboard as
/// soon as the paste keys are pressed.
class DictationRig {
 public:
  DictationRig(Executor& executor, Clock& clock, TranscriptionProviderFactory& recognition,
               std::vector<float> recording, bool inRealTime = false)
      : executor_(executor),
        clock_(clock),
        input_(executor, clock, std::move(recording), inRealTime),
        audio_(executor, input_, authorization_, folder_.path()),
        workspace_(executor),
        keyboard_(executor, workspace_),
        general(executor, clock),
        primary_(executor, clock),
        insertion_({executor, clock, workspace_, keyboard_, secureInput_, general, &primary_}, options(),
                   Logger(log_, "test", "text-insertion")),
        cleanUp_(settings, languages_),
        sessions_({executor, clock, Logger(log_, "test", "incremental-stages"), &convertForRecognition}),
        coordinator({executor,
                     clock,
                     audio_,
                     insertion_,
                     settings,
                     history_,
                     models_,
                     recognition,
                     refinement_,
                     cleanUp_,
                     sessions_,
                     updates_,
                     downloads_,
                     overlay_,
                     sounds_,
                     session_,
                     cancelKey_,
                     memory_,
                     Logger(log_, "test", "dictation-summary"),
                     Logger(log_, "test", "incremental-stages")}) {
    settings.sounds = false;
    RunningApplication editor;
    editor.client = {100, 1'600};
    editor.bundleIdentifier = "Mousepad";
    workspace_.bringToFront(editor);
    general.writeByAnother(previousClipboard());
    keyboard_.onPosted([this, editor](PasteChord) {
      pastedAt = clock_.now();
      reading_ = executor_.after({}, [this, editor] {
        pasted = general.readBy(editor.client, "UTF8_STRING").value_or("(nothing)");
        ++pastes;
      });
    });
    settlements_ = insertion_.onPasteSettled([this](PasteSettlement) { ++settled_; });
    input_.onEnd = [this] {
      stoppedAt = clock_.now();
      coordinator.stopAndTranscribe();
    };
  }

  /// Whether it is known what became of every paste.
  [[nodiscard]] bool isSettled() const { return settled_ == pastes; }

  static ClipboardSnapshot previousClipboard() {
    return {{{{{"text/html", "<b>old</b>", "", 8}, {"image/png", std::string("\x89PNG\0\r\n", 7), "", 8}}}}};
  }

 private:
  static TextInsertionOptions options() {
    TextInsertionOptions options;
    options.applicationIdentifier = "app.murmel.Test";
    options.ownProcess = ::getpid();
    return options;
  }

  class NoLog final : public LogSink {
    void write(LogLevel, std::string_view, std::string_view, std::string_view) override {}
  };
  class NoOverlay final : public OverlayController {
    void update(const DictationState&) override {}
    void setLevel(double) override {}
    void showCaptureCondition(CaptureCondition) override {}
    void showHint(const std::string&) override {}
  };

  Executor& executor_;
  Clock& clock_;
  NoLog log_;
  TemporaryFolder folder_;
  FakeMicrophoneAuthorization authorization_;
  PlayedAudioInput input_;
  AudioCaptureService audio_;
  FakeWorkspace workspace_;
  FakeKeyboardPoster keyboard_;
  FakeSecureInput secureInput_;

 public:
  FakePasteboard general;
  FakeDictationSettings settings;
  int pastes = 0;      ///< how often the application in front has read a text
  std::string pasted;  ///< the last one
  Instant stoppedAt{};
  Instant pastedAt{};  ///< when the paste keys were pressed

 private:
  FakePasteboard primary_;
  TextInsertionService insertion_;
  FakeDictationHistory history_;
  FakeSpeechModelStore models_;
  FakeRefinementSource refinement_;
  FakeLanguageRecognizer languages_;
  SettingsTranscriptCleanUp cleanUp_;
  IncrementalDictationSessionFactory sessions_;
  FakeUpdateAdmissionGate updates_;
  FakeDownloadPriority downloads_;
  NoOverlay overlay_;
  FakeSoundPlayer sounds_;
  UnguardedSession session_;
  NoCancelKey cancelKey_;
  FakeProcessMemory memory_;
  Registration reading_, settlements_;
  int settled_ = 0;

 public:
  DictationCoordinator coordinator;
};

}  // namespace murmel::test
