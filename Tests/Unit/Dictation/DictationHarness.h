#pragma once

#include "Audio/AudioCaptureService.h"
#include "Dictation/DictationCoordinator.h"
#include "Platform/Fake/FakeAudioInput.h"
#include "Platform/Fake/FakeCancelKey.h"
#include "Platform/Fake/FakeMicrophoneAuthorization.h"
#include "Platform/Fake/FakeProcessMemory.h"
#include "Platform/Fake/FakeSessionGuard.h"
#include "Platform/Fake/FakeSoundPlayer.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/Awaiting.h"
#include "Support/DictationFakes.h"

namespace murmel::test {

/// A coordinator among fakes. Destruction is checked too: every lease must be back by then.
class DictationHarness {
 public:
  DictationHarness() {
    authorization.setPhase(MicrophonePermissionPhase::authorized);
    insertion.cleanup.answerWith(std::nullopt);
    insertion.insertion.answerWith(TextDeliveryResult::insertionSent);
    insertion.phraseInsertion.answerWith(true);
    insertion.copying.answerWith(true);
    recognise("hello world");
  }

  /// Makes the coordinator, after the test has set the scene.
  DictationCoordinator& begin() {
    coordinator = std::make_unique<DictationCoordinator>(
        DictationServices{executor,
                          executor,
                          audio,
                          insertion,
                          settings,
                          history,
                          models,
                          recognition,
                          refinement,
                          cleanUp,
                          sessions,
                          updates,
                          downloads,
                          overlay,
                          sounds,
                          session,
                          cancelKey,
                          memory,
                          Logger(log, "app.murmel.Murmel.Development", "dictation-summary"),
                          Logger(log, "app.murmel.Murmel.Development", "incremental-stages")});
    executor.runUntilIdle();
    if (recognition.finishWarmup) recognition.finishWarmup(true);
    return *coordinator;
  }

  /// Every session from now on ends with this text.
  void recognise(std::string text, int failedPieces = 0) {
    DictationSessionResult result;
    result.pieces.push_back({{}, SpokenText(text)});
    result.text = SpokenText(std::move(text));
    result.failedPieces = failedPieces;
    result.providerID = "fake-recogniser";
    sessions.finishing.answerWith(std::move(result));
  }
  void fail(MRMError error) { sessions.finishing.answerWith(std::unexpected(std::move(error))); }

  void speak(std::size_t samples = 480) { input.deliver(std::vector<float>(samples, 0.25F)); }

  /// Starts, and lets the microphone deliver its first fragment.
  void startByToggle() {
    coordinator->toggle();
    executor.runUntilIdle();
    speak();
    executor.runUntilIdle();
  }
  void dictateByToggle() {
    startByToggle();
    coordinator->toggle();
    executor.runUntilIdle();
  }

  /// Whether the last dictation stands on the clipboard.
  bool copy() {
    Awaiting copying(coordinator->copyLastTranscript());
    executor.runUntilIdle();
    return *copying;
  }

  [[nodiscard]] std::string title() const { return coordinator->state().title(); }
  [[nodiscard]] DictationState::Case state() const { return coordinator->state().which(); }
  /// Whether everything that a dictation borrows has been given back.
  [[nodiscard]] bool everythingIsBack() const {
    return updates.active.empty() && !downloads.runtimeActive && !insertion.sessionOpen &&
           sessions.living == 0 && !audio.recording();
  }

  ManualExecutor executor;
  FakeAudioInput input{executor, AudioFormat{48'000, 1}};
  FakeMicrophoneAuthorization authorization;
  AudioCaptureService audio{executor, input, authorization, "/nonexistent"};
  FakeTextInsertion insertion;
  FakeDictationSettings settings;
  FakeDictationHistory history;
  FakeSpeechModelStore models;
  FakeTranscriptionProviderFactory recognition;
  FakeRefinementSource refinement;
  FakeTranscriptCleanUp cleanUp;
  FakeDictationSessionFactory sessions;
  FakeUpdateAdmissionGate updates;
  FakeDownloadPriority downloads;
  FakeOverlay overlay;
  FakeSoundPlayer sounds;
  FakeSessionGuard session;
  FakeCancelKey cancelKey;
  FakeProcessMemory memory;
  MemoryLogSink log;
  std::unique_ptr<DictationCoordinator> coordinator;
};

}  // namespace murmel::test
