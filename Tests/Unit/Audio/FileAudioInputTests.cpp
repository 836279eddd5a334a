#include "Audio/AudioCaptureService.h"
#include "Audio/FileAudioAuthorization.h"
#include "Audio/FileAudioInput.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/Awaiting.h"
#include "Support/TemporaryFolder.h"
#include "Support/WaveBytes.h"

#include <chrono>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace murmel;
using namespace std::chrono_literals;
using ::testing::HasSubstr;

namespace {

using Pace = FileAudioInput::Pace;

class FileAudioInputTest : public ::testing::Test {
 protected:
  /// A file whose n-th sample is n: where it is cut and what is missing shows.
  std::unique_ptr<FileAudioInput> openRamp(Pace pace, std::size_t frames, std::uint32_t rate = 16'000) {
    std::vector<std::int16_t> samples(frames);
    for (std::size_t index = 0; index < frames; ++index)
      samples[index] = static_cast<std::int16_t>(index % 30'000);
    auto input =
        FileAudioInput::open(executor, executor, folder.write("ramp.wav", waveFile16(samples, rate)), pace);
    EXPECT_TRUE(input.has_value());
    (*input)->setOnEnd(
        [this](std::expected<void, std::string> result) { ends.push_back(std::move(result)); });
    return *std::move(input);
  }
  AudioInput::FragmentHandler handler() {
    return [this](std::span<const float> fragment, AudioFormat) {
      fragments.push_back(fragment.size());
      for (const float sample : fragment) {
        EXPECT_EQ(sample, static_cast<float>(heard % 30'000) / 32'768);
        ++heard;
      }
    };
  }

  using Outcome = std::expected<AudioFormat, AudioInputError>;

  ManualExecutor executor;
  TemporaryFolder folder;
  std::vector<std::size_t> fragments;
  std::size_t heard = 0;
  std::vector<std::expected<void, std::string>> ends;
};

}  // namespace

TEST_F(FileAudioInputTest, InRealTimeItIsHeardByTheClock) {
  const auto input = openRamp(Pace::realTime, 16'000 * 2 + 7);
  EXPECT_EQ(input->duration(), 2'000'437'500ns);
  Awaiting<Outcome> starting(input->start(handler(), [] {}));
  executor.advance(19ms);
  EXPECT_EQ(heard, 0U);
  executor.advance(1ms);
  ASSERT_TRUE(starting.done());
  EXPECT_EQ(**starting, (AudioFormat{16'000, 1}));
  EXPECT_EQ(fragments, std::vector<std::size_t>{320});
  executor.advance(980ms);
  EXPECT_EQ(heard, 16'000U);
  executor.advance(1s);
  EXPECT_TRUE(ends.empty());
  executor.advance(1ms);
  EXPECT_EQ(heard, 32'007U);
  ASSERT_EQ(ends.size(), 1U);
  EXPECT_TRUE(ends[0].has_value());
  executor.advance(1h);
  EXPECT_EQ(ends.size(), 1U) << "silence after the end";
  input->stop();
  EXPECT_EQ(heard, 32'007U);
}

TEST_F(FileAudioInputTest, AStopHandsOverWhatWasHeardByThen) {
  struct Row {
    std::uint32_t rate;
    Duration elapsed;
    std::size_t frames;
  };
  for (const auto& row : std::vector<Row>{{16'000, 27ms, 432},
                                          {44'100, 1s + 1ms, 44'144},
                                          {11'025, 20ms, 220},
                                          {100, 30ms, 3},
                                          {192'000, 100ms, 19'200}}) {
    heard = 0;
    const auto input = openRamp(Pace::realTime, std::size_t{2} * row.rate, row.rate);
    Awaiting<Outcome> starting(input->start(handler(), [] {}));
    executor.advance(row.elapsed);
    ASSERT_TRUE(starting.done());
    input->stop();
    EXPECT_EQ(heard, row.frames) << row.rate << " Hz";
    executor.advance(1s);
    EXPECT_EQ(heard, row.frames);
    EXPECT_TRUE(ends.empty());
  }
}

TEST_F(FileAudioInputTest, ABusyMainThreadLosesNothing) {
  /// Runs ahead of the executor, as real time does while a job keeps the main thread busy.
  class RunningAhead final : public Clock {
   public:
    explicit RunningAhead(Clock& base) : base_(base) {}
    [[nodiscard]] Instant now() const override { return base_.now() + ahead; }
    [[nodiscard]] WallTime wallNow() const override { return base_.wallNow(); }
    Duration ahead{0};

   private:
    Clock& base_;
  };
  openRamp(Pace::realTime, std::size_t{16'000} * 8);
  RunningAhead clock(executor);
  const auto input = *FileAudioInput::open(executor, clock, folder.path() / "ramp.wav", Pace::realTime);
  Awaiting<Outcome> starting(input->start(handler(), [] {}));
  executor.advance(20ms);
  clock.ahead = 3s;
  executor.advance(20ms);
  EXPECT_EQ(heard, 16'000U * 3 + 640) << "the next turn makes up for it";
  clock.ahead = 6s;
  input->stop();
  EXPECT_EQ(heard, 16'000U * 6 + 640) << "and so does the stop";
}

TEST_F(FileAudioInputTest, AsFastAsItCanTakesNoTimeAndLetsOtherJobsRun) {
  const auto input = openRamp(Pace::asFastAsItCan, 16'000 * 600);
  Awaiting<Outcome> starting(input->start(handler(), [] {}));
  EXPECT_EQ(heard, 0U) << "not inside the call";
  std::size_t heardByOthers = 0;
  executor.post([&] { executor.post([&] { heardByOthers = heard; }); });
  executor.runUntilIdle();
  EXPECT_TRUE(starting.done() && starting->has_value());
  EXPECT_EQ(heard, 16'000U * 600);
  EXPECT_LT(heardByOthers, heard);
  EXPECT_EQ(ends.size(), 1U);
  EXPECT_EQ(*std::ranges::max_element(fragments), 320U) << "one fragment of memory for ten minutes";
}

TEST_F(FileAudioInputTest, EveryRecordingBeginsWithTheFile) {
  const auto input = openRamp(Pace::realTime, 16'000);
  for (int round = 0; round < 2; ++round) {
    heard = 0;
    Awaiting<Outcome> starting(input->start(handler(), [] {}));
    executor.advance(500ms);
    ASSERT_TRUE(starting.done());
    Awaiting<Outcome> second(input->start(handler(), [] {}));
    ASSERT_TRUE(second.done());
    EXPECT_FALSE(second->has_value()) << "one recording at a time";
    input->stop();
    EXPECT_EQ(heard, 8'000U);
  }
}

TEST_F(FileAudioInputTest, ACancelledStartHearsNothing) {
  const auto input = openRamp(Pace::realTime, 16'000);
  {
    const Awaiting<Outcome> starting(input->start(handler(), [] {}));
    executor.advance(10ms);
    input->stop();
  }
  executor.advance(1s);
  EXPECT_EQ(heard, 0U);
  EXPECT_EQ(executor.pendingTimers(), 0U);
  Awaiting<Outcome> again(input->start(handler(), [] {}));
  executor.advance(20ms);
  EXPECT_TRUE(again.done() && again->has_value());
  input->stop();
}

TEST_F(FileAudioInputTest, SaysThatTheFileBrokeOffAndKeepsWhatWasHeard) {
  const auto input = openRamp(Pace::realTime, 16'000);
  Awaiting<Outcome> starting(input->start(handler(), [] {}));
  executor.advance(100ms);
  std::filesystem::resize_file(folder.path() / "ramp.wav", 44 + 2 * 2'000);
  executor.advance(1s);
  EXPECT_EQ(heard, 1'920U);
  ASSERT_EQ(ends.size(), 1U);
  EXPECT_THAT(ends[0].error(), HasSubstr("ramp.wav"));
  input->stop();
}

TEST_F(FileAudioInputTest, ItsOwnerMayLetGoOfItWhenItEnds) {
  auto input = openRamp(Pace::asFastAsItCan, 1'000);
  bool ended = false;
  input->setOnEnd([&](std::expected<void, std::string>) {
    input->stop();
    input.reset();
    ended = true;
  });
  Awaiting<Outcome> starting(input->start(handler(), [] {}));
  executor.runUntilIdle();
  EXPECT_TRUE(ended);
  EXPECT_EQ(heard, 1'000U);
}

TEST_F(FileAudioInputTest, WholeRoadFromAFileToWhatARecogniserIsGiven) {
  const auto input = openRamp(Pace::asFastAsItCan, 48'001, 48'000);
  FileAudioAuthorization authorization;
  AudioCaptureService service(executor, *input, authorization, folder.path());
  Awaiting<Result<void>> starting(service.start());
  executor.runUntilIdle();
  ASSERT_TRUE(starting.done() && starting->has_value());
  ASSERT_EQ(ends.size(), 1U);
  auto pending = service.stop();
  ASSERT_TRUE(pending);
  const CapturedAudio audio{AudioCaptureService::encodePCM16LE(AudioCaptureService::resample(
      std::move(pending->monoSamples), pending->sampleRate, recognitionSampleRate))};
  EXPECT_EQ(audio.duration(), 1.0);
}
