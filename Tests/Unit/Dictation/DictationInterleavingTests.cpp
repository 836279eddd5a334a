#include "DictationHarness.h"

namespace {

/// Everything that can happen to a coordinator, as moves of a random walk. Each neighbour that suspends is
/// held back, so that every order of answers and of the user's actions comes up.
class Walk {
 public:
  explicit Walk(std::uint32_t seed) : random_(seed) {
    house_.settings.live = seed % 3 == 0;
    house_.settings.history = true;
    house_.sessions.finishing.holdBack();
    house_.insertion.cleanup.holdBack();
    house_.insertion.insertion.holdBack();
    house_.insertion.copying.holdBack();
    house_.begin();
  }

  void step() {
    const std::array<std::function<void()>, 23> moves{
        [this] { house_.coordinator->toggle(); },
        [this] { house_.coordinator->shortcutPressed(); },
        [this] { house_.coordinator->shortcutReleased(); },
        [this] { house_.coordinator->stopAndTranscribe(); },
        [this] { copying_.emplace(house_.coordinator->copyLastTranscript()); },
        [this] { deliverAudio(); },
        [this] {
          if (!house_.audio.recording()) return;
          house_.sessions.last->speaks = random_() % 2 == 0;
          house_.input.changeConfiguration();
        },
        [this] {
          house_.models.become(random_() % 4 == 0 ? SpeechModelState::missing : SpeechModelState::ready);
        },
        [this] { house_.updates.refuses = random_() % 4 == 0; },
        [this] { finishSession(); },
        [this] { resumeIfWaiting(house_.insertion.cleanup, std::optional<TextDeliveryResult>()); },
        [this] { resumeIfWaiting(house_.insertion.insertion, TextDeliveryResult::insertionSent); },
        [this] { resumeIfWaiting(house_.insertion.copying, random_() % 2 == 0); },
        [this] { house_.executor.advance(std::chrono::milliseconds(random_() % 2'000)); },
        [this] { house_.authorization.setPhase(randomPhase()); },
        [this] { house_.authorization.answer(random_() % 2 == 0); },
        [this] { (void)house_.coordinator->cancel(); },
        [this] { (void)house_.coordinator->retry(); },
        [this] { house_.coordinator->stop(); },
        [this] {
          if (random_() % 4 == 0) drained_.emplace(house_.coordinator->drain());
        },
        [this] {
          if (drained_ && !drained_->done()) house_.coordinator->hurryDrain();
        },
        [this] {
          if (drained_ && drained_->done()) house_.coordinator->admit();
        },
        [this] {
          house_.session.become(random_() % 4 == 0 ? std::optional(SessionObstacle::locked) : std::nullopt);
        }};
    moves[random_() % moves.size()]();
    house_.executor.runUntilIdle();
    checkInvariants();
  }

  /// Lets everything that is still under way end, and looks whether all is as before.
  void finish() {
    house_.models.become(SpeechModelState::ready);
    house_.session.become(std::nullopt);
    for (int round = 0; round < 50; ++round) {
      house_.coordinator->shortcutReleased();
      if (house_.coordinator->state().isRecording()) house_.coordinator->stopAndTranscribe();
      house_.authorization.answer(false);
      deliverAudio();
      finishSession();
      resumeIfWaiting(house_.insertion.cleanup, std::optional<TextDeliveryResult>());
      resumeIfWaiting(house_.insertion.insertion, TextDeliveryResult::insertionSent);
      resumeIfWaiting(house_.insertion.copying, true);
      if (house_.recognition.finishWarmup) house_.recognition.finishWarmup(true);
      house_.executor.advance(10s);
    }
    EXPECT_EQ(house_.title(), "Ready");
    EXPECT_TRUE(house_.everythingIsBack());
    EXPECT_TRUE(!drained_ || drained_->done()) << "an end is never waited for in vain";
  }

 private:
  void deliverAudio() { house_.speak(); }

  void finishSession() {
    DictationSessionResult result;
    result.text = SpokenText("words");
    const auto outcome = random_() % 4;
    if (outcome == 0) {
      resumeIfWaiting(house_.sessions.finishing,
                      Result<DictationSessionResult>(std::unexpected(MRMError(MRMError::Case::noSpeech))));
    } else if (outcome == 1) {
      resumeIfWaiting(house_.sessions.finishing, Result<DictationSessionResult>(std::unexpected(
                                                     MRMError::workerFailed("worker response timed out"))));
    } else {
      resumeIfWaiting(house_.sessions.finishing, Result<DictationSessionResult>(std::move(result)));
    }
  }

  template <class T>
  void resumeIfWaiting(Suspension<T>& suspension, T value) {
    if (suspension.isWaiting()) suspension.resume(std::move(value));
  }

  MicrophonePermissionPhase randomPhase() {
    constexpr std::array phases{MicrophonePermissionPhase::authorized, MicrophonePermissionPhase::authorized,
                                MicrophonePermissionPhase::notDetermined, MicrophonePermissionPhase::denied};
    return phases[random_() % phases.size()];
  }

  void checkInvariants() {
    const auto& state = house_.coordinator->state();
    const bool reopens = house_.input.isStarting() && !house_.coordinator->isStarting();
    EXPECT_EQ(state.isRecording(), house_.audio.recording() || reopens) << state.title();
    if (state.isRecording()) {
      EXPECT_FALSE(house_.session.obstacle());
      EXPECT_TRUE(house_.insertion.sessionOpen) << "a recording knows its target";
      EXPECT_TRUE(house_.downloads.runtimeActive);
      EXPECT_FALSE(house_.updates.active.empty());
    }
    EXPECT_LE(house_.sessions.living, 3) << "superseded dictations pile up";
  }

  DictationHarness house_;
  std::optional<Awaiting<bool>> copying_;
  std::optional<Awaiting<DrainOutcome>> drained_;
  std::mt19937 random_;
};

}  // namespace

TEST(DictationInterleavings, NothingIsLostOrLeftHeldInAnyOrderOfEvents) {
  for (std::uint32_t seed = 0; seed < 250; ++seed) {
    SCOPED_TRACE(seed);
    Walk walk(seed);
    for (int step = 0; step < 120 && !::testing::Test::HasFailure(); ++step) walk.step();
    walk.finish();
    if (::testing::Test::HasFailure()) return;
  }
}
