#include "DictationHarness.h"

using Case = DictationState::Case;

namespace {

class DictationCoordinatorTest : public ::testing::Test, public DictationHarness {};

}  // namespace

TEST_F(DictationCoordinatorTest, AHeldShortcutDictates) {
  begin();
  coordinator->shortcutPressed();
  executor.runUntilIdle();
  EXPECT_EQ(title(), "Ready") << "a microphone that has not delivered anything does not record";
  speak(480);
  executor.runUntilIdle();
  EXPECT_EQ(title(), "Listening… release shortcut");
  EXPECT_EQ(sounds.played(), std::vector{SystemSound::tink});
  EXPECT_TRUE(downloads.runtimeActive);
  EXPECT_TRUE(insertion.sessionOpen);

  coordinator->shortcutPressed();
  EXPECT_EQ(state(), Case::listening) << "a second press while recording is ignored";
  speak(480);
  executor.advance(100ms);
  EXPECT_GT(overlay.lastLevel, 0);
  executor.advance(900ms);
  EXPECT_EQ(sessions.samples, 960U) << "captured audio goes to the session once a second";
  EXPECT_EQ(sessions.last->configuration.refinement, refinement.refiner);

  insertion.insertion.holdBack();
  coordinator->shortcutReleased();
  EXPECT_EQ(title(), "Transcribing locally…");
  EXPECT_EQ(sounds.played(), (std::vector{SystemSound::tink, SystemSound::pop}));
  EXPECT_FALSE(audio.recording());
  EXPECT_EQ(insertion.recordingsEnded, 1);
  EXPECT_EQ(insertion.delivered, Strings{"[hello world]"});
  EXPECT_TRUE(coordinator->hasLastTranscript()) << "kept before it is delivered";
  insertion.insertion.resume(TextDeliveryResult::insertionSent);

  EXPECT_EQ(title(), "Inserted");
  EXPECT_TRUE(everythingIsBack());
  executor.advance(1499ms);
  EXPECT_EQ(title(), "Inserted");
  executor.advance(1ms);
  EXPECT_EQ(title(), "Ready");
}

TEST_F(DictationCoordinatorTest, EveryDeliveryResultHasItsStateAndRestAfterwards) {
  const std::vector<std::pair<TextDeliveryResult, std::string>> rows{
      {TextDeliveryResult::insertionSent, "Inserted"},
      {TextDeliveryResult::insertedAndClipboardRestored, "Inserted · clipboard restored"},
      {TextDeliveryResult::insertedAndTranscriptKept, "Inserted · transcript kept"},
      {TextDeliveryResult::insertionSentClipboardChanged, "Insertion sent · clipboard changed"},
      {TextDeliveryResult::copiedFallback, "Copied — press ⌘V"},
  };
  begin();
  for (const auto& [result, expected] : rows) {
    insertion.insertion.answerWith(result);
    dictateByToggle();  // from the outcome of the row before: every outcome admits a new start
    EXPECT_EQ(title(), expected);
  }
  executor.advance(1500ms);
  EXPECT_EQ(title(), "Ready");
  insertion.copySucceeds = false;
  dictateByToggle();
  EXPECT_EQ(title(), notCopiedWarning) << "not called copied";
  EXPECT_TRUE(coordinator->canRetry());
}

TEST_F(DictationCoordinatorTest, HowAPasteTurnedOutIsShownWhenItIsKnown) {
  begin();
  dictateByToggle();
  EXPECT_EQ(title(), "Inserted");
  executor.advance(1s);
  insertion.settled.emit(PasteSettlement::clipboardRestored);
  EXPECT_EQ(title(), "Inserted · clipboard restored");
  executor.advance(1500ms);
  EXPECT_EQ(title(), "Ready");
  insertion.settled.emit(PasteSettlement::clipboardRestored);
  EXPECT_EQ(title(), "Ready") << "news of something that is no longer on show";

  insertion.settled.emit(PasteSettlement::neverRead);
  EXPECT_EQ(title(), "The application did not take the text. Copied — press ⌘V.");
  executor.advance(6s);
  EXPECT_EQ(title(), "Ready");

  Strings notices;
  const auto told = coordinator->onNotice().subscribe([&](auto& notice) { notices.push_back(notice); });
  startByToggle();
  insertion.settled.emit(PasteSettlement::neverRead);
  EXPECT_EQ(state(), Case::listening) << "a recording goes on";
  EXPECT_EQ(notices, Strings{"The application did not take the last dictation. "
                             "It is on the clipboard — press ⌘V."});
  coordinator->toggle();
  executor.runUntilIdle();
  EXPECT_EQ(title(), "Inserted") << "it has been told";
  insertion.clipboardKept = false;
  dictateByToggle();
  EXPECT_EQ(title(), "Your clipboard could not be kept.");
}

TEST_F(DictationCoordinatorTest, TheTargetLengthFollowsTheSettings) {
  struct Row {
    bool live, process;
    double seconds;
  };
  begin();
  for (const auto& row : {Row{true, true, 3.0}, Row{true, false, 3.0}, Row{false, true, 15.0},
                          Row{false, false, std::numeric_limits<double>::infinity()}}) {
    settings.live = row.live;
    settings.process = row.process;
    settings.language = "de";
    startByToggle();
    EXPECT_EQ(sessions.last->configuration.targetSegmentSeconds, row.seconds);
    EXPECT_EQ(static_cast<bool>(sessions.last->configuration.onPhrase), row.live);
    EXPECT_EQ(sessions.last->configuration.languageCode, "de");
    (void)sessions.last->configuration.nextTranscription();
    EXPECT_EQ(std::exchange(recognition.nextFor, {}), "de");
    coordinator->toggle();
    executor.runUntilIdle();
  }
  EXPECT_TRUE(contains(log.lines.back(), "dictation-summary: dictation_stop duration_seconds="));
  EXPECT_TRUE(
      contains(log.lines, {"incremental-stages: session_started target_seconds=inf live_callback=false"}));
}

TEST(DictationRefusals, SayWhyAndGiveEverythingBack) {
  struct Row {
    std::string name;
    std::function<void(DictationHarness&)> scene;
    std::string shown, rest;
    int missingCalls = 0;
  };
  const std::vector<Row> rows{
      {"an update is being installed", [](auto& house) { house.updates.refuses = true; },
       "Finish the app update before recording.", "Ready"},
      {"the model is not installed", [](auto& house) { house.models.become(SpeechModelState::missing); },
       "Download the required Parakeet speech model to use dictation",
       "Download the required Parakeet speech model to use dictation", 1},
      {"the microphone is denied",
       [](auto& house) { house.authorization.setPhase(MicrophonePermissionPhase::denied); },
       "Microphone permission is required", "Ready"},
      {"the microphone is restricted",
       [](auto& house) { house.authorization.setPhase(MicrophonePermissionPhase::restricted); },
       "Microphone permission is required", "Ready"},
      {"the microphone does not start", [](auto& house) { house.input.failStart(AudioInputError::noServer); },
       "Could not start microphone recording", "Ready"},
      {"the worker is not there",
       [](auto& house) {
         house.models.folder = "/models/other";
         house.recognition.failure = MRMError(MRMError::Case::workerMissing);
       },
       "Local ASR worker is missing from the app", "Local ASR worker is missing from the app"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    DictationHarness house;
    house.begin();
    row.scene(house);
    int missingCalls = 0;
    house.coordinator->onRequiredModelMissing([&] { ++missingCalls; });
    house.coordinator->toggle();
    house.executor.runUntilIdle();
    EXPECT_EQ(house.title(), row.shown);
    EXPECT_TRUE(house.everythingIsBack());
    EXPECT_EQ(missingCalls, row.missingCalls);
    house.executor.advance(4s);
    EXPECT_EQ(house.title(), row.rest);
    EXPECT_EQ(house.sounds.played(), std::vector<SystemSound>{});
  }
}

TEST_F(DictationCoordinatorTest, ASupersededDictationOnlyCleansUpWhereverItWaited) {
  begin();
  const auto supersedeWhileItWaits = [&](auto& suspension, auto answer, std::size_t deliveredByThen) {
    startByToggle();
    suspension.holdBack();
    coordinator->toggle();
    ASSERT_TRUE(suspension.isWaiting());
    coordinator->stopAndTranscribe();  // nothing to stop: an error, from which a new dictation can start
    startByToggle();
    ASSERT_EQ(state(), Case::listening);
    suspension.resume(answer);
    suspension.answerWith(answer);
    EXPECT_EQ(state(), Case::listening) << "the outcome of the old one must not be shown";
    EXPECT_TRUE(insertion.sessionOpen) << "the session belongs to the new one";
    EXPECT_TRUE(downloads.runtimeActive);
    EXPECT_EQ(updates.active.size(), 1U);
    EXPECT_EQ(insertion.delivered.size(), deliveredByThen);
    EXPECT_EQ(history.entries.size(), 0U);
    settings.history = false;
    coordinator->toggle();
    executor.runUntilIdle();
    insertion.delivered.clear();
    settings.history = true;
  };
  settings.history = true;
  DictationSessionResult result;
  result.text = SpokenText("hello world");
  supersedeWhileItWaits(sessions.finishing, Result<DictationSessionResult>(result), 0);
  supersedeWhileItWaits(insertion.cleanup, std::optional<TextDeliveryResult>(), 0);
  supersedeWhileItWaits(insertion.insertion, TextDeliveryResult::insertionSent, 1);
  EXPECT_TRUE(everythingIsBack());
}

TEST_F(DictationCoordinatorTest, SilenceComesBackToRestWithoutAMessage) {
  begin();
  for (const auto* text : {"", "   \n\t "}) {
    recognise(text);
    dictateByToggle();
    EXPECT_EQ(title(), "Ready");
  }
  fail(MRMError::Case::noSpeech);
  dictateByToggle();
  EXPECT_EQ(title(), "Ready");
  EXPECT_EQ(insertion.delivered, Strings{});
  EXPECT_FALSE(coordinator->hasLastTranscript());
  EXPECT_FALSE(coordinator->canRetry()) << "there is nothing in it";
}

TEST_F(DictationCoordinatorTest, AChangedDeviceEndsTheRecordingWithWhatWasCaptured) {
  begin();
  recognise("hello world", 2);
  startByToggle();
  input.changeConfiguration();
  executor.runUntilIdle();
  EXPECT_EQ(title(),
            "Part of the recording was not recognized. "
            "Audio configuration changed. Recording stopped; captured audio processed.");
  EXPECT_EQ(insertion.delivered, Strings{"[hello world]"});
  EXPECT_TRUE(coordinator->canRetry());
  models.inventoryChange.emit();
  executor.advance(5999ms);
  EXPECT_EQ(state(), Case::warning) << "news of the models do not cut a message short";
  executor.advance(1ms);
  EXPECT_EQ(title(), "Ready");

  fail(MRMError::Case::noSpeech);
  startByToggle();
  input.changeConfiguration();
  executor.runUntilIdle();
  EXPECT_EQ(title(), "Audio configuration changed. Recording stopped; no speech was recognized.");
  EXPECT_TRUE(log.lines.back().ends_with(" device_changed=true")) << log.lines.back();
}

TEST_F(DictationCoordinatorTest, AShortageOfMemoryEndsTheRecordingBeforeAWordIsLost) {
  begin();
  startByToggle();
  memory.room = 0;
  executor.advance(40ms);
  EXPECT_EQ(title(), "Memory is running out. Recording stopped; captured audio processed.");
  EXPECT_EQ(insertion.delivered, Strings{"[hello world]"});
  startByToggle();
  EXPECT_EQ(title(), "There is too little memory to record.");

  memory.room = 60'000'000;
  RecordingMemory aside(memory);
  EXPECT_FALSE(aside.isShort(48'000));
  EXPECT_TRUE(aside.isShort(96'000)) << "the same seconds take twice as much";
  aside.release();
  EXPECT_EQ(memory.room, 60'000'000U);
}

TEST_F(DictationCoordinatorTest, AFailedRefinementDeliversTheWordsAndSaysWhy) {
  begin();
  DictationSessionResult result;
  result.text = SpokenText("raw words");
  result.refinementFailure = MRMError(MRMError::Case::smartModelMissing);
  sessions.finishing.answerWith(result);
  dictateByToggle();
  EXPECT_EQ(insertion.delivered, Strings{"[raw words]"});
  EXPECT_EQ(title(), "Smart Local model or runtime is not installed");
  EXPECT_EQ(state(), Case::warning);
}

TEST_F(DictationCoordinatorTest, LivePhrasesAreInsertedOnceAndTheStopInsertsNothingMore) {
  settings.live = true;
  insertion.result = TextDeliveryResult::insertedAndTranscriptKept;
  begin();
  startByToggle();
  Scope scope;
  scope.start(sessions.last->configuration.onPhrase(SpokenText("one")));
  scope.start(sessions.last->configuration.onPhrase(SpokenText("two")));
  const auto told = coordinator->onNotice().subscribe([](auto& notice) { ADD_FAILURE() << notice; });
  insertion.settled.emit(PasteSettlement::neverRead);  // of a phrase: the end of the dictation tells
  recognise("one two");
  coordinator->toggle();
  executor.runUntilIdle();
  EXPECT_EQ(insertion.phrases, (Strings{"[one]", " [two]"}));
  EXPECT_EQ(insertion.delivered, Strings{});
  EXPECT_EQ(insertion.copied, Strings{});
  EXPECT_EQ(title(), "Inserted · transcript kept");
  copy();
  EXPECT_EQ(insertion.copied, Strings{"[one] [two]"}) << "the clean-up is not applied a second time";
}

TEST_F(DictationCoordinatorTest, ABlockedLiveInsertionCopiesTheRestAndSaysWhy) {
  settings.live = true;
  settings.history = true;
  insertion.block = LiveInsertionBlock::appChanged;
  begin();
  startByToggle();
  Scope scope;
  scope.start(sessions.last->configuration.onPhrase(SpokenText("one")));
  insertion.phraseInsertion.answerWith(false);
  scope.start(sessions.last->configuration.onPhrase(SpokenText("two")));
  scope.start(sessions.last->configuration.onPhrase(SpokenText("three")));
  recognise("one two three");
  coordinator->toggle();
  executor.runUntilIdle();
  EXPECT_EQ(insertion.phrases, (Strings{"[one]", " [two]"}));
  EXPECT_EQ(insertion.copied, Strings{"[two] [three]"});
  EXPECT_EQ(title(), "Insertion stopped: you switched applications. Remaining text copied — press ⌘V.");
  ASSERT_EQ(history.entries.size(), 1U);
  EXPECT_EQ(history.entries[0].text.reveal(), "[one] [two] [three]");
  EXPECT_TRUE(contains(log.lines.back(), " live_blocked=app_changed"));
}

TEST_F(DictationCoordinatorTest, HistoryIsWrittenOnlyWhenItIsOn) {
  begin();
  insertion.block = LiveInsertionBlock::appChanged;
  dictateByToggle();
  EXPECT_EQ(history.entries.size(), 0U);
  EXPECT_FALSE(contains(log.lines.back(), "app_changed")) << "it was no live one";
  EXPECT_FALSE(contains(log.text(), "hello"));

  settings.history = true;
  recognise("kept", 1);
  dictateByToggle();
  ASSERT_EQ(history.entries.size(), 1U);
  const auto& entry = history.entries[0];
  EXPECT_EQ(entry.text.reveal(), "[kept]");
  EXPECT_EQ(entry.providerID, "fake-recogniser");
  EXPECT_EQ(entry.language, "Automatic");
  EXPECT_EQ(entry.unrecognizedParts, 1);
  EXPECT_EQ(entry.createdAt, historyDate(executor.wallNow()));
}

TEST_F(DictationCoordinatorTest, TheLastDictationCanBeCopiedForTwoMinutesOrUntilTheNextStarts) {
  begin();
  copy();
  EXPECT_EQ(title(), "Ready") << "nothing to copy";
  dictateByToggle();
  executor.advance(119s);
  copy();
  EXPECT_EQ(insertion.copied, Strings{"[hello world]"});
  executor.advance(999ms);
  EXPECT_TRUE(coordinator->hasLastTranscript());
  executor.advance(1ms);
  EXPECT_FALSE(coordinator->hasLastTranscript());
  EXPECT_EQ(title(), "Copied — press ⌘V");
  executor.advance(500ms);
  EXPECT_EQ(title(), "Ready");

  dictateByToggle();
  insertion.copying.answerWith(false);
  EXPECT_FALSE(copy());
  EXPECT_EQ(title(), notCopiedWarning);
  EXPECT_TRUE(coordinator->hasLastTranscript());
  startByToggle();
  EXPECT_FALSE(coordinator->hasLastTranscript());
  coordinator->toggle();
  executor.runUntilIdle();
}

TEST_F(DictationCoordinatorTest, BacklogIsShownByRevisionAndOperation) {
  begin();
  startByToggle();
  const auto report = sessions.last->configuration.onBacklog;
  report(true, 2);
  EXPECT_EQ(title(), "Listening · recognition is catching up…");
  report(false, 1);
  report(false, 2);
  EXPECT_EQ(state(), Case::listeningBehind) << "an old revision never flips the display back";
  report(false, 3);
  EXPECT_EQ(state(), Case::listening);
  coordinator->updateBacklog(true, 4, 999);
  EXPECT_EQ(state(), Case::listening) << "another operation's report";
  report(true, 5);
  coordinator->shortcutReleased();
  executor.runUntilIdle();
  EXPECT_EQ(state(), Case::success) << "a recording that is behind stops like any other";
  report(false, 6);
  EXPECT_EQ(state(), Case::success);

  startByToggle();
  sessions.last->configuration.onBacklog(true, 1);
  EXPECT_EQ(state(), Case::listeningBehind) << "revisions count anew for every recording";
  coordinator->toggle();
  executor.runUntilIdle();
}

TEST_F(DictationCoordinatorTest, TheModelsStateIsShownAtRest) {
  models.current = SpeechModelState::verifying;
  begin();
  EXPECT_EQ(title(), "Verifying existing local models…");
  coordinator->toggle();
  executor.runUntilIdle();
  EXPECT_EQ(title(), "Verifying existing local models…");
  EXPECT_TRUE(everythingIsBack());
  models.become(SpeechModelState::missing);
  EXPECT_EQ(title(), "Required Parakeet speech model is not installed");
  executor.advance(1h);
  EXPECT_EQ(title(), "Required Parakeet speech model is not installed");
  models.become(SpeechModelState::ready);
  EXPECT_EQ(title(), "Ready");
  EXPECT_EQ(recognition.made, 1);
  models.inventoryChange.emit();
  EXPECT_EQ(refinement.warmUps, 1);
  recognition.finishWarmup(true);
  EXPECT_FALSE(downloads.runtimeActive);
  startByToggle();
  models.become(SpeechModelState::missing);
  EXPECT_EQ(state(), Case::listening) << "missed only afterwards";
  coordinator->toggle();
  executor.runUntilIdle();
  executor.advance(1500ms);
  EXPECT_EQ(title(), "Required Parakeet speech model is not installed");
}

TEST_F(DictationCoordinatorTest, TheWarmUpHoldsOptionalDownloadsBackUntilItEnds) {
  coordinator = nullptr;
  begin();
  EXPECT_FALSE(downloads.runtimeActive);
  models.folder = "/models/newer";
  models.inventoryChange.emit();
  EXPECT_TRUE(downloads.runtimeActive);
  dictateByToggle();
  EXPECT_TRUE(downloads.runtimeActive) << "the end of a dictation leaves the warm-up's hold alone";
  recognition.finishWarmup(false);
  EXPECT_FALSE(downloads.runtimeActive);
}

TEST_F(DictationCoordinatorTest, AStalledMicrophoneIsShownUntilItDeliversAgain) {
  begin();
  startByToggle();
  speak();
  executor.advance(100ms);
  EXPECT_GT(overlay.lastLevel, 0);
  executor.advance(3s);
  EXPECT_EQ(overlay.condition, CaptureCondition::stalled);
  EXPECT_EQ(overlay.lastLevel, 0);
  speak();
  executor.advance(100ms);
  EXPECT_EQ(overlay.condition, CaptureCondition::fine);
  executor.advance(3s);
  coordinator->toggle();
  EXPECT_EQ(overlay.condition, CaptureCondition::fine) << "it is no state of the rest";
  executor.runUntilIdle();
}

TEST_F(DictationCoordinatorTest, AHeadsetThatTakesOverBeforeAnySpeechIsListenedTo) {
  begin();
  startByToggle();
  sessions.last->speaks = false;
  speak(100);
  input.changeConfiguration();
  executor.runUntilIdle();
  EXPECT_EQ(state(), Case::listening);
  EXPECT_EQ(sessions.samples, 580U) << "what the device before it heard";
  EXPECT_EQ(input.startCount(), 2);
  executor.advance(500ms);
  EXPECT_EQ(overlay.hint, "Opening the microphone…") << "nobody hears what is said now";
  speak(50);
  executor.advance(1100ms);
  EXPECT_EQ(overlay.hint, "");
  EXPECT_GE(sessions.samples, 630U);
  input.changeConfiguration();
  executor.runUntilIdle();
  EXPECT_EQ(title(), "Audio configuration changed. Recording stopped; captured audio processed.")
      << "too late";

  for (const auto end : {&DictationCoordinator::shortcutReleased, &DictationCoordinator::toggle}) {
    startByToggle();
    sessions.last->speaks = false;
    input.changeConfiguration();
    executor.runUntilIdle();
    (coordinator.get()->*end)();
    EXPECT_EQ(title(), "Ready") << "while the other one opens: a start that ends";
    EXPECT_TRUE(everythingIsBack());
    executor.runUntilIdle();
  }
  startByToggle();
  EXPECT_EQ(state(), Case::listening) << "nothing is in the way of the next one";
  ASSERT_TRUE(coordinator->cancel());
}
