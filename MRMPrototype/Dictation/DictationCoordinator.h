#pragma once

#include "Audio/AudioCaptureService.h"
#include "Delivery/TextInsertion.h"
#include "Dictation/DictationOperationTracker.h"
#include "Dictation/DictationStatus.h"
#include "Dictation/LastTranscriptBuffer.h"
#include "Dictation/OverlayController.h"
#include "Dictation/PassingHint.h"
#include "Dictation/PauseWatch.h"
#include "Dictation/RecogniserPreparation.h"
#include "Dictation/Recording.h"
#include "Dictation/RetryBuffer.h"
#include "Dictation/RuntimePriority.h"
#include "Dictation/TranscriptCleanUp.h"
#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Async/Timers.h"
#include "Foundation/Log.h"
#include "History/DictationHistory.h"
#include "MRMUpdatePolicy/UpdateAdmissionGate.h"
#include "Models/ModelDownloadPriorityCoordinator.h"
#include "Models/SpeechModelStore.h"
#include "Platform/CancelKey.h"
#include "Platform/ProcessMemory.h"
#include "Platform/SessionGuard.h"
#include "Platform/SoundPlayer.h"
#include "Recognition/TranscriptionProviderFactory.h"
#include "Refinement/RefinementSource.h"
#include "Segmentation/DictationSession.h"
#include "Settings/DictationSettings.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// The services that a dictation is made of. All of them outlive the coordinator.
struct DictationServices {
  Executor& executor;
  Clock& clock;
  AudioCaptureService& audio;
  TextInsertion& insertion;
  DictationSettings& settings;
  DictationHistory& history;
  SpeechModelStore& models;
  TranscriptionProviderFactory& recognition;
  RefinementSource& refinement;
  TranscriptCleanUp& cleanUp;
  DictationSessionFactory& sessions;
  UpdateAdmissionGate& updates;
  ModelDownloadPriorityCoordinator& downloads;
  OverlayController& overlay;
  SoundPlayer& sounds;
  SessionGuard& session;
  CancelKey& cancelKey;
  ProcessMemory& memory;
  Logger diagnostic;  ///< category "dictation-summary"
  Logger stages;      ///< category "incremental-stages"
};

/// Where the words are when neither an application nor the clipboard took them.
inline constexpr const char* notCopiedWarning =
    "The text could not be put on the clipboard. You find it in Murmel's menu.";
inline constexpr const char* lockedWarning = "The screen was locked while you dictated. Copied — press ⌘V.";

/// What became of the words that were under way when the application was to end.
enum class DrainOutcome {
  done,        ///< delivered, or there were none
  copied,      ///< no application has them: they are on the clipboard
  copiedPart,  ///< not recognised in time: what was recognised is on the clipboard
  notCopied,   ///< the clipboard did not take them either
  lost,        ///< not recognised, and there is nothing to copy
};

/// Owns one dictation from the request to start it until its text is delivered and the status is back at
/// rest. It decides the order in which the services are called, and is the only writer of the published
/// state. Main thread.
class DictationCoordinator {
 public:
  explicit DictationCoordinator(DictationServices services);
  ~DictationCoordinator();
  DictationCoordinator(const DictationCoordinator&) = delete;
  DictationCoordinator& operator=(const DictationCoordinator&) = delete;

  /// Start/stop of the menu and the indicator: starts at rest, stops while recording, does nothing in
  /// between.
  void toggle();
  /// The shortcut went down: start, on condition that it is still held when the checks are done.
  void shortcutPressed();
  /// The shortcut went up: a recording ends and is delivered.
  void shortcutReleased();
  void beginPushToTalk();
  /// Ends the recording and delivers it. A start that is under way just ends.
  void stopAndTranscribe();
  /// The same; false, and nothing at all, when nothing is recorded.
  bool stop();
  /// Whether the microphone is being opened.
  [[nodiscard]] bool isStarting() const { return startRequestInFlight_; }
  /// Throws away what is recorded, or recognised but not yet delivered; the clipboard is left alone, and the
  /// sound is kept for `retry`. The error is one sentence for the user.
  std::expected<void, std::string> cancel();
  /// Recognises and delivers the last dictation that failed or was cancelled once more.
  std::expected<void, std::string> retry();
  /// Puts the last dictation on the clipboard once more. Whether it stands there; false when there is none.
  Task<bool> copyLastTranscript();

  [[nodiscard]] const DictationState& state() const { return status_.state(); }
  [[nodiscard]] Signal<const DictationState&>& onStateChange() { return status_.onChange(); }
  [[nodiscard]] bool hasLastTranscript() const { return hasLastTranscript_; }
  /// Nothing when there is none any more.
  [[nodiscard]] const std::optional<SpokenText>& lastTranscript() const { return lastTranscript_.text(); }
  [[nodiscard]] Signal<bool>& onLastTranscriptChange() { return onLastTranscriptChange_; }

  /// The words of the running dictation, piece by piece as they are recognised. For the windows of this
  /// process: they are never told to another.
  [[nodiscard]] Signal<const RecognisedPiece&>& onRecognised() { return onRecognised_; }

  [[nodiscard]] bool canRetry() const { return retryBuffer_.available(); }
  [[nodiscard]] Signal<bool>& onRetryChange() { return retryBuffer_.onChange(); }

  /// Something that the user must be told while the state has something else to show.
  [[nodiscard]] Signal<const std::string&>& onNotice() { return onNotice_; }

  /// Before the application ends: stops a recording, lets its delivery end, and admits no other.
  Task<DrainOutcome> drain();
  /// Ends the wait of `drain`: the words that there are go to the clipboard, as private text.
  void hurryDrain();
  /// A recording has ended whose words are not known yet.
  [[nodiscard]] bool isRecognising() const { return delivering_ != nullptr && !delivering_->text; }
  /// After a drain, when the application goes on all the same.
  void admit();

  /// Recognition of `operation` is behind, or has caught up. Revisions that are not newer than the last one,
  /// and operations that are not current, are ignored.
  void updateBacklog(bool behind, std::int64_t revision, OperationIdentifier operation);

  /// Called when a dictation is refused because the speech model is not installed.
  void onRequiredModelMissing(std::function<void()> handler) { onRequiredModelMissing_ = std::move(handler); }

 private:
  void startRecording(bool requireHeld);
  Task<void> start();
  bool endStart();
  void endReopening();
  Registration beginUpdateActivity();
  Registration beginInsertionSession(OperationIdentifier operation);
  void prepareSession(Recording& recording, bool live);
  void startTimers();
  void stopTimers();
  void takeCapturedAudio();
  static void feed(Recording& recording, PendingCapturedAudio audio);
  void showCancelled();
  void audioConfigurationChanged();
  Task<void> goOnWithNewDevice(OperationIdentifier operation);
  void showCaptureCondition(CaptureCondition condition);
  void sessionChanged();
  bool endWhereNobodyIs();
  Task<void> copyWhenSomebodyIs(SpokenText words);
  Task<void> copyAtUnlock(SpokenText words);
  Task<void> copyAtTheEnd(SpokenText words, DrainOutcome outcome);

  Task<void> deliver(std::unique_ptr<Recording> recording);
  Registration announceDelivery(Recording* recording = nullptr);
  void answerDrain();
  [[nodiscard]] std::string wordsSoFar(const Recording& recording) const;
  [[nodiscard]] SpokenText finalText(const Recording& recording, const DictationSessionResult& result) const;
  /// Nothing when the operation was superseded meanwhile.
  Task<std::optional<TextDeliveryResult>> deliverText(Recording& recording, SpokenText text);
  Task<bool> insertLivePhrase(OperationIdentifier operation, SpokenText phrase);
  [[nodiscard]] std::vector<std::string> collectWarnings(const Recording& recording,
                                                         const DictationSessionResult& result,
                                                         TextDeliveryResult delivered) const;
  void pasteSettled(PasteSettlement settlement);
  void showOutcome(TextDeliveryResult result, const std::vector<std::string>& warnings);
  void warn(const std::string& sentence);
  void showFailure(const MRMError& error, const Recording& recording);
  void logSummary(const Recording& recording) const;
  void keepInHistory(SpokenText text, const std::string& providerID, int unrecognizedParts);

  bool ensureRecogniser();
  RecogniserPreparation::Outcome prepareRecogniser();
  void modelInventoryChanged();
  void showRest();
  void showVerifying();

  DictationServices services_;
  DictationStatus status_;
  DictationOperationTracker operationTracker_;
  LastTranscriptBuffer lastTranscript_;
  RetryBuffer retryBuffer_;
  PassingHint hint_;
  Signal<const std::string&> onNotice_;
  bool hasLastTranscript_ = false;
  Signal<bool> onLastTranscriptChange_;
  Signal<const RecognisedPiece&> onRecognised_;
  CaptureCondition captureCondition_ = CaptureCondition::fine;
  RuntimePriority runtimePriority_;
  RecogniserPreparation preparation_;
  Registration modelInventoryObserver_;
  Registration pasteObserver_;
  Registration overlayObserver_;
  Registration sessionObserver_;
  std::function<void()> onRequiredModelMissing_;

  bool startRequestInFlight_ = false;
  bool startRequiresHeld_ = false;
  bool refinementWarmupStarted_ = false;
  std::int64_t backlogRevision_ = 0;
  /// Which dictation pasted last.
  OperationIdentifier pasteOwner_ = 0;
  /// Words that go to the clipboard when the session is unlocked.
  std::optional<SpokenText> untilUnlock_;
  OperationIdentifier insertionSessionOwner_ = 0;
  std::unique_ptr<Recording> recording_;
  PauseWatch pauseWatch_;
  std::optional<RepeatingTimer> meterTimer_;
  std::optional<RepeatingTimer> capturePump_;
  Registration cancelKey_;
  Recording* delivering_ = nullptr;  ///< the newest one; its task owns it
  int deliveries_ = 0;               ///< superseded ones included, and words on their way to the clipboard
  bool draining_ = false;
  DrainOutcome drainOutcome_ = DrainOutcome::done;
  std::vector<OneShotSender<bool>> drainWaiters_;
  /// Last, so that no task outlives what it uses.
  Scope starts_;
  Scope changes_;  ///< of the device
  Scope delivery_;
  Scope copies_;
};

}  // namespace murmel
