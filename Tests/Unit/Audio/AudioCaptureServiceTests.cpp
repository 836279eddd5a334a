#include "Audio/AudioCaptureService.h"
#include "Platform/Fake/FakeAudioInput.h"
#include "Platform/Fake/FakeMicrophoneAuthorization.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/Awaiting.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

class AudioCaptureServiceTest : public ::testing::Test {
 protected:
  ~AudioCaptureServiceTest() override { EXPECT_EQ(input.violations(), Strings{}); }

  /// Brings a recording up whose first fragment is `first`.
  void record(std::vector<float> first = {0, 0}) {
    Awaiting<Result<void>> starting(service.start());
    ASSERT_TRUE(input.deliver(first));
    executor.runUntilIdle();
    ASSERT_TRUE(starting.done() && starting->has_value());
  }

  ManualExecutor executor;
  FakeAudioInput input{executor};
  FakeMicrophoneAuthorization authorization;
  TemporaryFolder folder;
  AudioCaptureService service{executor, input, authorization, folder.path()};
};

}  // namespace

TEST_F(AudioCaptureServiceTest, HasBegunWithTheFirstFragmentAndKeepsIt) {
  Awaiting<Result<void>> starting(service.start());
  executor.advance(1s);
  EXPECT_FALSE(starting.done());
  EXPECT_FALSE(service.recording());
  input.deliver(std::vector<float>{0.5F, 0.25F});
  executor.runUntilIdle();
  ASSERT_TRUE(starting.done());
  EXPECT_TRUE(starting->has_value());
  EXPECT_TRUE(service.recording());
  const auto audio = service.stop();
  ASSERT_TRUE(audio);
  EXPECT_EQ(audio->monoSamples, PrivateVector<float>{0.375F});
  EXPECT_EQ(audio->sampleRate, 48'000);
  EXPECT_FALSE(service.recording());
  EXPECT_FALSE(service.stop());
}

TEST_F(AudioCaptureServiceTest, MixesAnyNumberOfChannelsDown) {
  struct Row {
    const char* what;
    unsigned channels;
    std::vector<float> interleaved;
    PrivateVector<float> mono;
  };
  for (const auto& row :
       std::vector<Row>{{"opposite channels cancel out", 2, {1, -1, 0.5F, 0.5F}, {0, 0.5F}},
                        {"mono stays", 1, {0.25F, -1, 2}, {0.25F, -1, 2}},
                        {"five channels", 5, {1, 1, 1, 1, 1, 0, 0, 0, 0, 5}, {1, 1}},
                        {"half a frame is not a frame", 2, {1, 1, 7}, {1}},
                        {"no whole frame", 4, {1, 1, 1}, {}},
                        {"nothing", 2, {}, {}},
                        {"no channels", 0, {1, 1}, {}},
                        {"what is not finite is silence",
                         2,
                         {notANumber, 1, infinity, -infinity, 1, infinity, 1, 1},
                         {0, 0, 0, 1}},
                        {"a sum that overflows is silence", 2, {3e38F, 3e38F, 1, 1}, {0, 1}}}) {
    input.setFormat({16'000, 1});
    record({0});
    service.takePendingAudio();
    input.setFormat({16'000, row.channels});
    EXPECT_TRUE(input.deliver(row.interleaved));
    const auto audio = service.stop();
    ASSERT_TRUE(audio) << row.what;
    EXPECT_EQ(audio->monoSamples, row.mono) << row.what;
  }
}

TEST_F(AudioCaptureServiceTest, KeepsFragmentsLongerThanTheScratchBufferWhole) {
  record({0, 0});
  service.takePendingAudio();
  std::vector<float> interleaved;
  for (int frame = 0; frame < 5'000; ++frame) {
    interleaved.push_back(static_cast<float>(frame));
    interleaved.push_back(static_cast<float>(frame + 2));
  }
  input.deliver(interleaved);
  const auto audio = service.stop();
  ASSERT_TRUE(audio);
  ASSERT_EQ(audio->monoSamples.size(), 5'000U);
  for (std::size_t frame = 0; frame < 5'000; ++frame)
    ASSERT_EQ(audio->monoSamples[frame], static_cast<float>(frame + 1));
}

TEST_F(AudioCaptureServiceTest, HandsOverWhatIsNewAndEverythingUpToTheStop) {
  record({0.125F, 0.125F});
  EXPECT_EQ(service.takePendingAudio()->monoSamples, PrivateVector<float>{0.125F});
  EXPECT_FALSE(service.takePendingAudio()) << "nothing new";
  input.deliver(std::vector<float>{0.25F, 0.25F});
  input.hearBeforeStop({0.5F, 0.5F});
  EXPECT_EQ(service.stop()->monoSamples, (PrivateVector<float>{0.25F, 0.5F}));
  EXPECT_FALSE(service.takePendingAudio());

  record({1, 1});
  service.takePendingAudio();
  const auto nothingNew = service.stop();
  ASSERT_TRUE(nothingNew) << "a recording that ends with nothing new still hands over";
  EXPECT_EQ(nothingNew->monoSamples, PrivateVector<float>{});
  EXPECT_EQ(nothingNew->sampleRate, 48'000);
}

TEST_F(AudioCaptureServiceTest, ADiscardedRecordingLeavesNothingForTheNext) {
  record({1, 1});
  input.deliver(std::vector<float>{0.5F, 0.5F});
  service.discardCapturedAudio();
  EXPECT_FALSE(input.isRecording());
  EXPECT_FALSE(service.takePendingAudio());
  record({0.25F, 0.25F});
  EXPECT_EQ(service.stop()->monoSamples, PrivateVector<float>{0.25F});
}

TEST_F(AudioCaptureServiceTest, ASecondStartChangesNothing) {
  record();
  Awaiting<Result<void>> again(service.start());
  ASSERT_TRUE(again.done());
  EXPECT_TRUE(again->has_value());
  EXPECT_EQ(input.startCount(), 1);
  service.discardCapturedAudio();

  Awaiting<Result<void>> first(service.start());
  Awaiting<Result<void>> second(service.start());
  ASSERT_TRUE(second.done());
  EXPECT_FALSE(second->has_value()) << "the first is still under way";
  input.deliver(std::vector<float>{0, 0});
  executor.runUntilIdle();
  EXPECT_TRUE(first.done() && first->has_value());
}

TEST_F(AudioCaptureServiceTest, AFailedStartLeavesItIdleAndAbleToStartAgain) {
  for (const auto error :
       {AudioInputError::noDevice, AudioInputError::noServer, AudioInputError::notStarted}) {
    input.failStart(error);
    Awaiting<Result<void>> starting(service.start());
    executor.runUntilIdle();
    ASSERT_TRUE(starting.done());
    ASSERT_FALSE(starting->has_value());
    EXPECT_EQ(starting->error(), MRMError(MRMError::Case::recordingFailed));
    EXPECT_FALSE(service.recording());
    EXPECT_FALSE(service.stop());
  }
  record();
  EXPECT_TRUE(service.stop());
}

TEST_F(AudioCaptureServiceTest, AUselessFormatFailsTheStart) {
  for (const AudioFormat format : {AudioFormat{0, 2}, AudioFormat{48'000, 0}, AudioFormat{-1, 1},
                                   AudioFormat{infinity, 1}, AudioFormat{notANumber, 1}}) {
    input.setFormat(format);
    Awaiting<Result<void>> starting(service.start());
    input.deliver({});
    executor.runUntilIdle();
    ASSERT_TRUE(starting.done());
    EXPECT_FALSE(starting->has_value());
    EXPECT_FALSE(input.isRecording());
    EXPECT_FALSE(service.stop());
  }
}

TEST_F(AudioCaptureServiceTest, ACancelledStartRecordsNothing) {
  const auto cancelBefore = [this](const auto& step) {
    Awaiting<Result<void>> starting(service.start());
    step();
    starting.cancel();
    executor.runUntilIdle();
    EXPECT_FALSE(starting.done());
    EXPECT_FALSE(service.recording());
    EXPECT_FALSE(service.stop());
    EXPECT_FALSE(input.deliver(std::vector<float>{1, 1}));
  };
  cancelBefore([] {});
  cancelBefore([this] { input.deliver(std::vector<float>{1, 1}); });  // its answer is on the way
  record({0.5F, 0.5F});
  EXPECT_EQ(service.stop()->monoSamples, PrivateVector<float>{0.5F});
}

TEST_F(AudioCaptureServiceTest, AStopDuringAStartMakesItFail) {
  for (const bool discard : {false, true}) {
    Awaiting<Result<void>> starting(service.start());
    if (discard) {
      service.discardCapturedAudio();
    } else {
      EXPECT_FALSE(service.stop());
    }
    input.deliver(std::vector<float>{1, 1});
    executor.runUntilIdle();
    ASSERT_TRUE(starting.done());
    EXPECT_FALSE(starting->has_value());
    EXPECT_FALSE(service.recording());
    EXPECT_FALSE(input.isRecording());
  }
}

TEST_F(AudioCaptureServiceTest, TheLevelIsThatOfTheLatestFragment) {
  struct Row {
    const char* what;
    std::vector<float> interleaved;
    double level;
  };
  record();
  for (const auto& row : std::vector<Row>{
           {"silence", {0, 0, 0, 0}, 0},
           {"full scale is clamped", {1, 1, -1, -1}, 1},
           {"beyond it too", {1e30F, 1e30F}, 1},
           {"RMS 0.01", {0.01F, 0.01F, -0.01F, -0.01F}, 0.22},
           {"half of the frames silent", {0.02F, 0.02F, 0, 0}, 2.2 * std::sqrt(0.02 * std::sqrt(0.5))},
           {"broken samples are silence", {notANumber, 0, infinity, 0}, 0}}) {
    input.deliver(row.interleaved);
    EXPECT_NEAR(service.normalizedLevel(), row.level, 1e-6) << row.what;
  }
  input.deliver(std::vector<float>{1, 1});
  service.stop();
  EXPECT_EQ(service.normalizedLevel(), 0);
}

TEST_F(AudioCaptureServiceTest, TellsOnceThatTheDeviceChanged) {
  int told = 0;
  service.setOnConfigurationChange([&] { ++told; });
  record();
  input.changeConfiguration();
  EXPECT_EQ(told, 0) << "not on the audio thread";
  input.changeConfiguration();
  executor.runUntilIdle();
  EXPECT_EQ(told, 1);
  input.changeConfiguration();
  executor.runUntilIdle();
  EXPECT_EQ(told, 1);
  EXPECT_TRUE(service.recording()) << "only its owner ends a recording";
  service.stop();

  record();
  input.changeConfiguration();
  executor.runUntilIdle();
  EXPECT_EQ(told, 2) << "the next recording is told of its own changes";
  service.stop();
}

TEST_F(AudioCaptureServiceTest, LateNoticesAreForNobody) {
  int told = 0;
  service.setOnConfigurationChange([&] { ++told; });
  record();
  input.changeConfiguration();  // on its way while the recording ends and the next one begins
  service.stop();
  record();
  executor.runUntilIdle();
  EXPECT_EQ(told, 0);
  service.discardCapturedAudio();

  Awaiting<Result<void>> starting(service.start());
  input.changeConfiguration();  // exchanged before it records: what records then is what was opened
  executor.runUntilIdle();
  input.deliver(std::vector<float>{0, 0});
  executor.runUntilIdle();
  EXPECT_EQ(told, 0);
  input.changeConfiguration();
  executor.runUntilIdle();
  EXPECT_EQ(told, 1) << "the early notice has not used it up";
}

TEST_F(AudioCaptureServiceTest, AFragmentAtAnotherRateIsReportedAndNotMixedIn) {
  int told = 0;
  service.setOnConfigurationChange([&] { ++told; });
  record({0.5F, 0.5F});
  input.setFormat({8'000, 1});
  input.deliver(std::vector<float>{1, 1, 1});
  input.deliver(std::vector<float>{1, 1, 1});
  executor.runUntilIdle();
  EXPECT_EQ(told, 1);
  const auto audio = service.stop();
  EXPECT_EQ(audio->monoSamples, PrivateVector<float>{0.5F});
  EXPECT_EQ(audio->sampleRate, 48'000);
}

TEST_F(AudioCaptureServiceTest, PermissionFollowsTheDesktop) {
  using enum MicrophonePermissionPhase;
  struct Row {
    const char* what;
    MicrophonePermissionPhase before;
    std::optional<bool> answer;
    MicrophonePermissionPhase after;
    bool expected;
  };
  for (const auto& row :
       std::vector<Row>{{"authorized", authorized, std::nullopt, authorized, true},
                        {"denied", denied, std::nullopt, denied, false},
                        {"restricted", restricted, std::nullopt, restricted, false},
                        {"the user says no", notDetermined, false, denied, false},
                        {"the user says yes", notDetermined, true, authorized, true},
                        {"yes, but the desktop does not follow", notDetermined, true, notDetermined, false},
                        {"unknown is asked", unknown, true, authorized, true}}) {
    authorization.setPhase(row.before);
    const int asked = authorization.requestCount();
    Awaiting<bool> requesting(service.requestPermission());
    EXPECT_EQ(authorization.requestCount() - asked, row.answer.has_value() ? 1 : 0) << row.what;
    if (row.answer) {
      EXPECT_FALSE(requesting.done()) << row.what;
      authorization.answer(*row.answer);
      // The phase follows the answer late, but in time.
      if (*row.answer) executor.advance(249ms);
      authorization.setPhase(row.after);
      if (*row.answer) {
        EXPECT_FALSE(requesting.done()) << row.what;
        executor.advance(1ms);
      }
    }
    ASSERT_TRUE(requesting.done()) << row.what;
    EXPECT_EQ(*requesting, row.expected) << row.what;
  }
}

TEST_F(AudioCaptureServiceTest, RemovesStaleRecordingsAndNothingElse) {
  const std::vector<std::uint8_t> contents{1};
  const auto stale = folder.write("mrm-1234.wav", contents);
  std::vector<std::filesystem::path> kept;
  for (const char* name : {"mrm-notes.txt", "other.wav", "mrm-.WAV", "xmrm-1.wav", "mrm-1.wav.part"})
    kept.push_back(folder.write(name, contents));
  std::filesystem::create_symlink(kept[0], folder.path() / "mrm-link.wav");
  std::filesystem::create_directory(folder.path() / "mrm-folder.wav");
  kept.push_back(folder.write("mrm-folder.wav/inside", contents));
  const AudioCaptureService other(executor, input, authorization, folder.path());
  EXPECT_FALSE(std::filesystem::exists(stale));
  EXPECT_FALSE(std::filesystem::is_symlink(folder.path() / "mrm-link.wav"));
  for (const auto& path : kept) EXPECT_TRUE(std::filesystem::exists(path)) << path;
  AudioCaptureService::cleanupTemporaryAudio(folder.path() / "does-not-exist");
}
