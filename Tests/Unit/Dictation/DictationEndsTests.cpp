// How a dictation ends when it does not just go well: abandoned, thrown away, tried again, forgotten, or cut
// short by the end of the application.

#include "Dictation/ApplicationLifecycle.h"
#include "DictationHarness.h"

using Case = DictationState::Case;

namespace {

class DictationEnds : public ::testing::Test, public DictationHarness {
 protected:
  /// A recording is being recognised, and the recogniser does not answer.
  void transcribe() {
    sessions.finishing.holdBack();
    dictateByToggle();
    ASSERT_EQ(state(), Case::transcribing);
  }
  void drain() {
    drained.emplace(coordinator->drain());
    executor.runUntilIdle();
  }

  std::optional<Awaiting<DrainOutcome>> drained;
  Scope scope;
};

}  // namespace

TEST_F(DictationEnds, AStartEndsSilentlyWhereverItWaits) {
  const std::vector<std::function<void(DictationCoordinator&)>> ends{
      [](auto& house) { house.stop(); },
      [](auto& house) { house.stopAndTranscribe(); },
      [](auto& house) { house.shortcutReleased(); },
  };
  begin();
  updates.refuses = true;
  coordinator->toggle();
  updates.refuses = false;
  for (const auto phase : {MicrophonePermissionPhase::notDetermined, MicrophonePermissionPhase::authorized}) {
    for (const auto& end : ends) {
      authorization.setPhase(phase);
      coordinator->shortcutPressed();
      coordinator->toggle();  // a second request changes nothing
      executor.runUntilIdle();
      executor.advance(5s);
      EXPECT_EQ(overlay.hint, "Opening the microphone…");
      end(*coordinator);
      EXPECT_EQ(overlay.hint, "");
      EXPECT_TRUE(everythingIsBack());
      authorization.answer(true);
      speak();
      executor.runUntilIdle();
      EXPECT_EQ(title(), "Finish the app update before recording.") << "what was on show stays";
      EXPECT_FALSE(audio.recording());
    }
  }
  executor.advance(4s);
  EXPECT_EQ(title(), "Ready") << "for its time";
}

TEST_F(DictationEnds, APressWhileTranscribingIsHeard) {
  begin();
  insertion.insertion.holdBack();
  dictateByToggle();
  coordinator->shortcutPressed();
  EXPECT_EQ(overlay.hint, "Still transcribing the last dictation…");
  executor.advance(2s);
  EXPECT_EQ(overlay.hint, "");
  copy();
  EXPECT_EQ(insertion.copied, Strings{"[hello world]"});
  EXPECT_EQ(state(), Case::transcribing);
  EXPECT_FALSE(coordinator->cancel()) << "its words are on their way";
  insertion.insertion.resume(TextDeliveryResult::insertionSent);
  EXPECT_EQ(title(), "Inserted");
}

TEST_F(DictationEnds, WhatIsCancelledIsNotDeliveredAndCanBeTriedAgainForTenMinutes) {
  begin();
  EXPECT_FALSE(coordinator->cancel());
  EXPECT_FALSE(coordinator->retry());
  startByToggle();
  speak(48'000);
  ASSERT_TRUE(coordinator->cancel());
  EXPECT_EQ(title(), "Cancelled");
  EXPECT_TRUE(everythingIsBack());
  executor.advance(1500ms);
  EXPECT_EQ(title(), "Ready");
  EXPECT_EQ(insertion.delivered, Strings{});

  sessions.samples = 0;
  transcribe();
  EXPECT_FALSE(coordinator->retry()) << "not while another one is under way";
  ASSERT_TRUE(coordinator->cancel());
  EXPECT_TRUE(everythingIsBack());
  EXPECT_TRUE(coordinator->canRetry());

  fail(MRMError::workerFailed("worker exited unexpectedly"));
  sessions.samples = 0;
  ASSERT_TRUE(coordinator->retry());
  executor.runUntilIdle();
  EXPECT_EQ(sessions.samples, 160U) << "the newer one, at the recogniser's rate";
  EXPECT_EQ(title(), "Local transcription failed: worker exited unexpectedly");
  executor.advance(4s);
  recognise("hello world");
  ASSERT_TRUE(coordinator->retry()) << "what fails again is kept again";
  executor.runUntilIdle();
  EXPECT_EQ(insertion.delivered, Strings{"[hello world]"});
  EXPECT_FALSE(coordinator->canRetry());

  startByToggle();
  cancelKey.press();
  EXPECT_EQ(title(), "Cancelled");
  EXPECT_FALSE(cancelKey.isTaken());
  executor.advance(10min - 1ms);
  EXPECT_TRUE(coordinator->canRetry());
  executor.advance(1ms);
  EXPECT_FALSE(coordinator->canRetry());

  settings.escape = false;
  startByToggle();
  EXPECT_FALSE(cancelKey.isTaken());
}

TEST_F(DictationEnds, AKeptRecordingSoundsAsItWasSpoken) {
  KeptRecording kept;
  const PrivateVector<float> spoken{0, 0.5F, -0.5F, 1, -1, 0.001F};
  kept.append({spoken, recognitionSampleRate});
  PrivateVector<float> heard;
  ASSERT_TRUE(kept.replay([&](PendingCapturedAudio part) { heard = std::move(part.monoSamples); }));
  ASSERT_EQ(heard.size(), spoken.size());
  for (std::size_t index = 0; index < spoken.size(); ++index) EXPECT_NEAR(heard[index], spoken[index], 1e-4);
}

TEST_F(DictationEnds, AForgottenRecordingIsDelivered) {
  settings.forgottenMinutes = 1;
  begin();
  startByToggle();
  int seconds = 0;
  const auto syllables = [](double loudness) {
    PrivateVector<float> second(48'000);
    for (std::size_t index = 0; index < second.size(); ++index) {
      const double time = static_cast<double>(index) / 48'000;
      const bool isSpoken = std::fmod(time, 0.4) < 0.2;
      second[index] = static_cast<float>((isSpoken ? loudness : 0.0005) * std::sin(1'000 * time));
    }
    return second;
  };
  const auto silence = syllables(0.0005);
  const auto hear = [&](const PrivateVector<float>& sound, int length) {
    for (int second = 0; second < length && state() == Case::listening; ++second, ++seconds) {
      input.deliver(sound);
      executor.advance(1s);
    }
  };
  hear(silence, 40);
  hear(syllables(0.2), 20);
  hear(silence, 50);
  EXPECT_EQ(state(), Case::listening) << "somebody has spoken in between";
  hear(silence, 100);
  EXPECT_LE(seconds, 130);
  EXPECT_EQ(insertion.delivered, Strings{"[hello world]"});
  settings.forgottenMinutes = 0;
  startByToggle();
  hear(silence, 100);
  EXPECT_EQ(state(), Case::listening) << "the user wants no limit";
}

TEST_F(DictationEnds, ASupersededLiveDictationInsertsNothingMore) {
  settings.live = true;
  begin();
  startByToggle();
  insertion.cleanup.holdBack();
  scope.start(sessions.last->configuration.onPhrase(SpokenText("one")));
  sessions.finishing.holdBack();
  coordinator->toggle();
  coordinator->stopAndTranscribe();  // nothing to stop: an error, from which a new dictation can start
  startByToggle();
  insertion.cleanup.resume(std::nullopt);
  EXPECT_EQ(insertion.phrases, Strings{});
  ASSERT_TRUE(coordinator->cancel());
}

TEST_F(DictationEnds, NobodyIsHeardAtALockedSessionAndWordsWaitForTheUnlock) {
  begin();
  const auto lock = [this] { session.become(SessionObstacle::locked); };
  const std::vector<std::function<void()>> locks{
      [&] {
        startByToggle();
        lock();
      },
      [&] {  // by a locker that tells nobody
        startByToggle();
        session.becomeSilently(SessionObstacle::locked);
        executor.advance(1s);
      },
      [&] {  // and unlocks it before the words are recognised
        sessions.finishing.holdBack();
        startByToggle();
        lock();
        session.become(std::nullopt);
        DictationSessionResult result;
        result.text = SpokenText("hello world");
        sessions.finishing.resume(result);
        sessions.finishing.answerWith(result);
        EXPECT_EQ(std::exchange(insertion.copied, {}), Strings{"[hello world]"});
        startByToggle();
        lock();
      },
      [&] {  // while it is being recognised
        transcribe();
        lock();
        DictationSessionResult result;
        result.text = SpokenText("hello world");
        sessions.finishing.resume(result);
        sessions.finishing.answerWith(result);
      },
  };
  for (const auto& lockInTheMiddle : locks) {
    lockInTheMiddle();
    executor.runUntilIdle();
    EXPECT_FALSE(audio.recording());
    EXPECT_EQ(insertion.copied, Strings{});
    const int made = sessions.made;
    coordinator->toggle();
    executor.runUntilIdle();
    EXPECT_EQ(title(), "The screen is locked.");
    EXPECT_EQ(sessions.made, made);
    session.become(std::nullopt);
    EXPECT_EQ(std::exchange(insertion.copied, {}), Strings{"[hello world]"});
    EXPECT_EQ(title(), "The screen was locked while you dictated. Copied — press ⌘V.");
    EXPECT_TRUE(everythingIsBack());
  }
  EXPECT_EQ(insertion.delivered, Strings{});
  // While the microphone opens.
  for (const bool isTold : {true, false}) {
    coordinator->toggle();
    executor.runUntilIdle();
    isTold ? lock() : session.becomeSilently(SessionObstacle::locked);
    EXPECT_NE(everythingIsBack(), !isTold);
    speak();
    executor.runUntilIdle();
    EXPECT_TRUE(everythingIsBack());
    session.become(std::nullopt);
  }
  settings.live = true;
  startByToggle();
  session.becomeSilently(SessionObstacle::locked);
  scope.start(sessions.last->configuration.onPhrase(SpokenText("one")));
  EXPECT_EQ(insertion.phrases, Strings{});
  drain();
  EXPECT_EQ(insertion.copied, Strings{"[one]"}) << "nobody will be there for the unlock";
  EXPECT_EQ(**drained, DrainOutcome::copied);
}

TEST_F(DictationEnds, WordsThatNoClipboardTakesAreNotCalledCopied) {
  begin();
  insertion.copying.answerWith(false);
  startByToggle();
  session.become(SessionObstacle::locked);
  executor.advance(5min);
  session.become(std::nullopt);
  EXPECT_EQ(title(), notCopiedWarning);
  EXPECT_TRUE(coordinator->hasLastTranscript()) << "as it says";

  startByToggle();
  session.become(SessionObstacle::locked);
  executor.runUntilIdle();
  insertion.copying.holdBack();
  drain();
  coordinator->hurryDrain();
  executor.runUntilIdle();
  EXPECT_FALSE(drained->done()) << "words are on their way";
  insertion.copying.resume(false);
  executor.runUntilIdle();
  EXPECT_EQ(**drained, DrainOutcome::notCopied);
}

TEST_F(DictationEnds, TwoDictationsThatWaitForTheUnlockBothArrive) {
  begin();
  sessions.finishing.holdBack();
  dictateByToggle();
  ASSERT_TRUE(coordinator->cancel());
  recognise("one");
  startByToggle();
  session.become(SessionObstacle::locked);
  executor.runUntilIdle();
  recognise("two");
  ASSERT_TRUE(coordinator->retry());
  executor.runUntilIdle();
  session.become(std::nullopt);
  EXPECT_EQ(insertion.copied, Strings{"[one] [two]"});
}

TEST_F(DictationEnds, ADrainWaitsForTheWordsAndAdmitsNoOthers) {
  settings.history = true;
  begin();
  startByToggle();
  insertion.insertion.holdBack();
  drain();
  EXPECT_EQ(state(), Case::transcribing);
  EXPECT_FALSE(drained->done());
  insertion.insertion.resume(TextDeliveryResult::insertionSent);
  executor.runUntilIdle();
  EXPECT_EQ(**drained, DrainOutcome::done);
  EXPECT_EQ(history.entries.size(), 1U);
  executor.advance(2s);
  startByToggle();
  EXPECT_EQ(title(), "Ready");
  coordinator->admit();
  startByToggle();
  ASSERT_TRUE(coordinator->cancel());
  coordinator->toggle();
  drain();
  EXPECT_TRUE(everythingIsBack()) << "a start that is under way";
  EXPECT_EQ(coordinator->retry().error(), "Murmel is about to end.");
}

TEST_F(DictationEnds, AHurriedDrainLeavesWhatIsRecognisedOnTheClipboard) {
  struct Row {
    std::string soFar;
    bool recognised;
    DrainOutcome outcome;
    Strings copied;
  };
  for (const auto& row :
       {Row{"", false, DrainOutcome::lost, {}}, Row{"hello", false, DrainOutcome::copiedPart, {"[hello]"}},
        Row{"hello", true, DrainOutcome::copied, {"[hello world]"}}}) {
    SCOPED_TRACE(static_cast<int>(row.outcome));
    DictationHarness house;
    house.settings.history = true;
    house.begin();
    (row.recognised ? house.insertion.insertion.holdBack() : house.sessions.finishing.holdBack());
    house.startByToggle();
    house.sessions.last->soFar = row.soFar;
    Awaiting draining(house.coordinator->drain());
    house.executor.runUntilIdle();
    house.coordinator->hurryDrain();
    house.executor.runUntilIdle();
    EXPECT_EQ(*draining, row.outcome);
    EXPECT_EQ(house.insertion.copied, row.copied);
    EXPECT_EQ(house.history.entries.size(), row.copied.size());
    EXPECT_TRUE(house.everythingIsBack());
    EXPECT_EQ(house.title(), "Ready") << "the session may go on, and so does the application";
    EXPECT_EQ(house.coordinator->canRetry(), !row.recognised);
    EXPECT_EQ(house.coordinator->hasLastTranscript(), row.outcome != DrainOutcome::lost);
  }
}

TEST_F(DictationEnds, TheCoordinatorMayGoInTheMiddle) {
  begin();
  startByToggle();
  coordinator.reset();
  EXPECT_TRUE(everythingIsBack());
  const auto start = [](AudioCaptureService& capture) -> Task<void> {
    auto opening = capture.start();
    co_await opening;
  };
  scope.start(start(audio));
  speak();
  input.changeConfiguration();
  executor.runUntilIdle();  // nobody listens any more
}

TEST(ApplicationLifecycle, DecidesWhatQuittingAndStartingMean) {
  using Action = ApplicationLifecycle::Action;
  ApplicationLifecycle impatient;
  EXPECT_EQ(impatient.startedAgain(), Action::none);
  impatient.launched();
  EXPECT_EQ(impatient.startedAgain(), Action::show);
  EXPECT_EQ(impatient.drained(), Action::none);
  EXPECT_EQ(impatient.quitRequested(), Action::drain);
  EXPECT_EQ(impatient.startedAgain(), Action::none);
  EXPECT_EQ(impatient.quitRequested(), Action::hurry);
  EXPECT_EQ(impatient.drainTimedOut(), Action::none);
  EXPECT_EQ(impatient.quitRequested(), Action::end);
  EXPECT_EQ(impatient.drained(), Action::none);

  ApplicationLifecycle early;
  EXPECT_EQ(early.quitRequested(), Action::end);
  early.launched();
  EXPECT_EQ(early.phase(), ApplicationLifecycle::Phase::ended);
}
