#include "Dictation/DictationCoordinator.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace murmel {

namespace {

constexpr Duration transcriptRetention = std::chrono::seconds(120);
constexpr Duration retryRetention = std::chrono::minutes(10);
constexpr Duration capturePumpInterval = std::chrono::seconds(1);
/// Twenty-five pictures a second: smooth to the eye.
constexpr Duration meterInterval = std::chrono::milliseconds(40);
/// A headset that wakes up takes over within this time.
constexpr Duration headsetTakesOver = std::chrono::seconds(1);

/// A phrase is worth inserting after this much speech; a segment recognised while recording is long enough to
/// be recognised well and short enough to be done soon after the stop. Seconds.
constexpr double liveSegmentSeconds = 3.0;
constexpr double backgroundSegmentSeconds = 15.0;

constexpr double secondsPerMinute = 60;

double targetSegmentSeconds(const DictationSettings& settings, bool live) {
  if (live) return liveSegmentSeconds;
  if (settings.processWhileRecording()) return backgroundSegmentSeconds;
  return std::numeric_limits<double>::infinity();
}

}  // namespace

DictationCoordinator::DictationCoordinator(DictationServices services)
    : services_(std::move(services)),
      status_(services_.executor, [this] { showRest(); }),
      lastTranscript_(services_.executor, transcriptRetention),
      retryBuffer_(services_.executor, retryRetention),
      hint_(services_.executor, services_.overlay),
      runtimePriority_(services_.downloads),
      preparation_(services_.models, services_.recognition, runtimePriority_) {
  overlayObserver_ = status_.onChange().subscribe([this](const DictationState& state) {
    hint_.clear();
    services_.overlay.update(state);
  });
  lastTranscript_.onAvailabilityChange([this](bool available) {
    if (std::exchange(hasLastTranscript_, available) != available) onLastTranscriptChange_.emit(available);
  });
  services_.audio.setOnConfigurationChange([this] { audioConfigurationChanged(); });
  pasteObserver_ =
      services_.insertion.onPasteSettled([this](PasteSettlement settlement) { pasteSettled(settlement); });
  modelInventoryObserver_ = services_.models.onInventoryChange([this] { modelInventoryChanged(); });
  sessionObserver_ = services_.session.onChange([this] { sessionChanged(); });
  showRest();
}

DictationCoordinator::~DictationCoordinator() {
  starts_.cancelAll();
  changes_.cancelAll();
  delivery_.cancelAll();
  copies_.cancelAll();
  services_.audio.setOnConfigurationChange(nullptr);
  services_.audio.discardCapturedAudio();
}

void DictationCoordinator::toggle() {
  if (state().isRecording()) {
    stopAndTranscribe();
  } else {
    startRecording(false);
  }
}

void DictationCoordinator::shortcutPressed() {
  beginPushToTalk();
}

void DictationCoordinator::beginPushToTalk() {
  if (!state().isRecording()) startRecording(true);
}

void DictationCoordinator::shortcutReleased() {
  if (state().isRecording()) {
    stopAndTranscribe();
  } else if (startRequiresHeld_) {
    endStart();
  }
}

void DictationCoordinator::startRecording(bool requireHeld) {
  if (draining_ || startRequestInFlight_) return;
  if (state().isBusy()) {
    hint_.show("Still transcribing the last dictation…");
    return;
  }
  if (const auto obstacle = services_.session.obstacle()) {
    status_.showTransientError(std::string(sentence(*obstacle)));
    return;
  }
  startRequestInFlight_ = true;
  startRequiresHeld_ = requireHeld;
  hint_.showIfItLasts("Opening the microphone…");
  starts_.start(start());
}

// Destroying this task, wherever it waits, ends the start and gives everything back.
Task<void> DictationCoordinator::start() {
  const Registration inFlight([this] {
    startRequestInFlight_ = false;
    startRequiresHeld_ = false;
    hint_.clear();
  });

  auto updateActivity = beginUpdateActivity();
  if (!updateActivity) {
    status_.showTransientError("Finish the app update before recording.");
    co_return;
  }
  const auto operation = operationTracker_.advance();
  status_.cancelRecovery();
  auto recording = std::make_unique<Recording>();
  recording->operation = operation;
  recording->updateActivity = std::move(updateActivity);
  recording->runtimePriority = runtimePriority_.hold();
  if (!ensureRecogniser()) co_return;
  recording->memory.emplace(services_.memory);
  if (recording->memory->isShort(0)) {
    status_.showTransientError("There is too little memory to record.");
    co_return;
  }

  auto asking = services_.audio.requestPermission();
  const bool permitted = co_await asking;
  if (!permitted) {
    status_.showTransientError(MRMError(MRMError::Case::microphoneDenied).localizedDescription());
    co_return;
  }

  backlogRevision_ = 0;
  lastTranscript_.clear();
  if (services_.settings.keepFailedRecordings()) recording->kept = std::make_unique<KeptRecording>();
  prepareSession(*recording,
                 services_.settings.insertWhileRecording() && services_.insertion.mayInsertLive());
  recording->insertionSession = beginInsertionSession(operation);

  auto starting = services_.audio.start();
  const Result<void> started = co_await starting;
  if (!started) {
    services_.audio.discardCapturedAudio();
    status_.showTransientError(started.error().localizedDescription());
    co_return;
  }

  // A microphone may take seconds to open.
  if (const auto obstacle = services_.session.obstacle()) {
    services_.audio.discardCapturedAudio();
    status_.showTransientError(std::string(sentence(*obstacle)));
    co_return;
  }

  recording_ = std::move(recording);
  recording_->begun = services_.clock.now();
  if (services_.settings.playFeedbackSound()) services_.sounds.play(SystemSound::tink);
  status_.show(DictationState::Case::listening);
  startTimers();
  if (services_.settings.cancelsWithEscape())
    cancelKey_ = services_.cancelKey.take([this] { (void)cancel(); });  // refused when it comes late
}

Registration DictationCoordinator::beginUpdateActivity() {
  const auto token = services_.updates.begin();
  if (!token) return {};
  return Registration([this, token = *token] { services_.updates.finish(token); });
}

Registration DictationCoordinator::beginInsertionSession(OperationIdentifier operation) {
  insertionSessionOwner_ = operation;
  services_.insertion.beginDictationSession();
  // A superseded operation must not end the session of the one that superseded it.
  return Registration([this, operation] {
    if (insertionSessionOwner_ == operation) services_.insertion.endDictationSession();
  });
}

void DictationCoordinator::prepareSession(Recording& recording, bool live) {
  DictationSessionConfiguration configuration;
  configuration.transcription = preparation_.provider();
  configuration.nextTranscription = [this] {
    return services_.recognition.makeNext(services_.settings.workerLanguageCode());
  };
  configuration.refinement = services_.refinement.makeRefinementProvider();
  configuration.languageCode = services_.settings.workerLanguageCode();
  configuration.targetSegmentSeconds = targetSegmentSeconds(services_.settings, live);
  configuration.draftsInPauses = true;
  configuration.onRecognised = [this](const RecognisedPiece& piece) { onRecognised_.emit(piece); };
  configuration.onBacklog = [this, operation = recording.operation](bool behind, std::int64_t revision) {
    updateBacklog(behind, revision, operation);
  };
  if (live) {
    recording.live = std::make_unique<LiveDictationDelivery>(
        [this](std::string text) { return services_.cleanUp.clean(std::move(text)); },
        [this, operation = recording.operation](SpokenText piece) {
          return insertLivePhrase(operation, std::move(piece));
        });
    configuration.onPhrase = [live = recording.live.get()](SpokenText phrase) {
      return live->append(std::move(phrase));
    };
  }
  services_.stages.event(LogLevel::info, "session_started",
                         {{"target_seconds", configuration.targetSegmentSeconds},
                          {"live_callback", static_cast<bool>(configuration.onPhrase)}});
  recording.session = services_.sessions.make(std::move(configuration));
}

void DictationCoordinator::startTimers() {
  pauseWatch_ = {};
  const auto showLevel = [this] {
    if (recording_->memory->isShort(services_.audio.sampleRate())) {
      recording_->memoryWasShort = true;
      stopAndTranscribe();
      return;
    }
    showCaptureCondition(services_.audio.health(services_.clock.now()));
    const double level = services_.audio.normalizedLevel();
    services_.overlay.setLevel(level);
    if (pauseWatch_.observe(level)) takeCapturedAudio();
  };
  meterTimer_.emplace(services_.executor, meterInterval, showLevel);
  capturePump_.emplace(services_.executor, capturePumpInterval, [this] { takeCapturedAudio(); });
}

void DictationCoordinator::stopTimers() {
  showCaptureCondition(CaptureCondition::fine);
  meterTimer_.reset();
  capturePump_.reset();
  cancelKey_.reset();
}

void DictationCoordinator::takeCapturedAudio() {
  if (endWhereNobodyIs()) return;
  if (auto pending = services_.audio.takePendingAudio()) feed(*recording_, *std::move(pending));
  const auto limit = services_.settings.forgottenRecordingMinutes();
  if (limit > 0 && recording_->speechless.seconds() >= limit * secondsPerMinute) stopAndTranscribe();
}

void DictationCoordinator::feed(Recording& recording, PendingCapturedAudio audio) {
  if (audio.monoSamples.empty()) return;
  if (recording.kept) recording.kept->append(audio);
  recording.speechless.append(audio);
  recording.session->append(std::move(audio));
}

void DictationCoordinator::audioConfigurationChanged() {
  if (!recording_) return;
  // Nobody has spoken into the device that went: nothing is lost when the other one goes on.
  if (services_.clock.now() - recording_->begun <= headsetTakesOver) {
    if (auto pending = services_.audio.takePendingAudio()) feed(*recording_, *std::move(pending));
    if (!recording_->session->heardSpeech()) {
      recording_->opensAnotherDevice = true;
      hint_.showIfItLasts("Opening the microphone…");
      changes_.start(goOnWithNewDevice(recording_->operation));
      return;
    }
  }
  recording_->deviceChanged = true;
  stopAndTranscribe();
}

Task<void> DictationCoordinator::goOnWithNewDevice(OperationIdentifier operation) {
  auto restarting = services_.audio.restart();
  const Result<void> restarted = co_await restarting;
  if (!recording_ || !operationTracker_.isCurrent(operation)) co_return;
  recording_->opensAnotherDevice = false;
  hint_.clear();
  if (restarted) co_return;
  recording_->deviceChanged = true;
  stopAndTranscribe();
}

void DictationCoordinator::showCaptureCondition(CaptureCondition condition) {
  if (std::exchange(captureCondition_, condition) == condition) return;
  services_.overlay.showCaptureCondition(condition);
}

bool DictationCoordinator::stop() {
  const bool isDictating = startRequestInFlight_ || state().isRecording();
  if (isDictating) stopAndTranscribe();
  return isDictating;
}

void DictationCoordinator::stopAndTranscribe() {
  // Whoever stops a start has asked for the silence that follows.
  if (endStart()) return;
  stopTimers();
  auto recording = std::move(recording_);
  if (recording && recording->opensAnotherDevice) {
    endReopening();
    recording.reset();
    showRest();
    return;
  }
  const bool isRunning = recording && operationTracker_.isCurrent(recording->operation);
  if (recording) recording->memory->release();
  auto captured = isRunning ? services_.audio.stop() : std::nullopt;
  if (!captured) {
    recording.reset();
    status_.showTransientError(MRMError(MRMError::Case::recordingFailed).localizedDescription());
    return;
  }
  feed(*recording, *std::move(captured));
  if (services_.settings.playFeedbackSound()) services_.sounds.play(SystemSound::pop);
  services_.insertion.recordingEnded();
  status_.show(DictationState::Case::transcribing);
  delivery_.start(deliver(std::move(recording)));
}

void DictationCoordinator::updateBacklog(bool behind, std::int64_t revision, OperationIdentifier operation) {
  if (!operationTracker_.isCurrent(operation) || !state().isRecording() || revision <= backlogRevision_)
    return;
  backlogRevision_ = revision;
  status_.show(behind ? DictationState::Case::listeningBehind : DictationState::Case::listening);
}

bool DictationCoordinator::ensureRecogniser() {
  switch (prepareRecogniser()) {
    case RecogniserPreparation::Outcome::ready:
      return true;
    case RecogniserPreparation::Outcome::verifying:
      showVerifying();
      return false;
    case RecogniserPreparation::Outcome::failed:
      status_.showTransientError(preparation_.failure()->localizedDescription());
      return false;
    case RecogniserPreparation::Outcome::missing:
      break;
  }
  status_.show(DictationState::error("Download the required Parakeet speech model to use dictation"));
  if (onRequiredModelMissing_) onRequiredModelMissing_();
  return false;
}

RecogniserPreparation::Outcome DictationCoordinator::prepareRecogniser() {
  const auto outcome = preparation_.prepareProviderIfPossible();
  const bool isReady = outcome == RecogniserPreparation::Outcome::ready;
  if (isReady && !std::exchange(refinementWarmupStarted_, true)) services_.refinement.warmUp();
  return outcome;
}

void DictationCoordinator::modelInventoryChanged() {
  // What is under way, or being shown for its time, stays; the rest, which looks at the models, follows it.
  if (!state().isBusy() && !status_.isRecoveryPending()) showRest();
}

void DictationCoordinator::showRest() {
  switch (prepareRecogniser()) {
    case RecogniserPreparation::Outcome::ready:
      status_.show(DictationState::Case::ready);
      break;
    case RecogniserPreparation::Outcome::verifying:
      showVerifying();
      break;
    case RecogniserPreparation::Outcome::missing:
      status_.show(DictationState::error("Required Parakeet speech model is not installed"));
      break;
    case RecogniserPreparation::Outcome::failed:
      status_.show(DictationState::error(preparation_.failure()->localizedDescription()));
      break;
  }
}

void DictationCoordinator::showVerifying() {
  status_.show(DictationState::warning("Verifying existing local models…"));
}

}  // namespace murmel
