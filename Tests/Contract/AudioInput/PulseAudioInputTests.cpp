// The microphone of a real sound server, private to this run. Its default source is the monitor of the sink
// "mic", 48 kHz stereo.

#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Support/Awaiting.h"
#include "Support/Listening.h"
#include "Support/Pulse.h"
#include "Support/Testing.h"

#include <mutex>

namespace {

using Outcome = std::expected<AudioFormat, AudioInputError>;
using RealClock = std::chrono::steady_clock;

class PulseAudioInputTest : public ::testing::Test {
 protected:
  void record() {
    Awaiting<Outcome> starting(input.start(listening.onFragment(), listening.onChange()));
    ASSERT_TRUE(executor.waitUntil([&] { return starting.done(); }));
    ASSERT_TRUE(starting->has_value());
    format = **starting;
  }

  ManualExecutor executor;
  PulseAudioInput input{executor, {"Murmel test", std::nullopt}};
  Listening listening;
  AudioFormat format;
};

}  // namespace

TEST_F(PulseAudioInputTest, RecordsAtTheSourcesOwnRateAndChannels) {
  struct Row {
    const char* arguments;
    AudioFormat format;
  };
  for (const auto& row :
       {Row{"rate=44100 channels=1", {44'100, 1}}, Row{"rate=8000 channels=2", {8'000, 2}},
        Row{"rate=192000 channels=6", {192'000, 6}}, Row{"rate=16000 channels=1", {16'000, 1}}}) {
    const PulseModule source(std::string("module-null-source source_name=other ") + row.arguments);
    const DefaultSource chosen("other");
    record();
    EXPECT_EQ(format, row.format) << row.arguments;
    input.stop();
  }
}

TEST_F(PulseAudioInputTest, FragmentsAreShort) {
  record();
  ASSERT_TRUE(executor.waitUntil([&] { return listening.fragments() >= 20; }));
  input.stop();
  const auto average = static_cast<double>(listening.sampleCount()) / format.channelCount /
                       listening.fragments() / format.sampleRate;
  EXPECT_LE(average, 0.0201) << "seconds";
}

TEST_F(PulseAudioInputTest, FollowsTheDefaultSourceAndSaysSo) {
  record();
  const PulseModule other("module-null-source source_name=other rate=8000 channels=1");
  EXPECT_EQ(listening.changes(), 0) << "one more device is no change";
  const DefaultSource chosen("other");
  ASSERT_TRUE(executor.waitUntil([&] { return listening.changes() > 0; }));
  const auto heard = listening.sampleCount();
  ASSERT_TRUE(executor.waitUntil([&] { return listening.sampleCount() > heard; })) << "it goes on";
  EXPECT_EQ(listening.formats().back(), format) << "at its first rate";
  input.stop();
}

TEST_F(PulseAudioInputTest, SaysThatItsSourceWasTakenAway) {
  PulseModule source("module-null-source source_name=other");
  const DefaultSource chosen("other");
  record();
  source.unload();
  ASSERT_TRUE(executor.waitUntil([&] { return listening.changes() > 0; }));
  input.stop();
}

TEST_F(PulseAudioInputTest, SaysThatItsSourceWasSuspended) {
  const PulseModule source("module-null-source source_name=other");
  const DefaultSource chosen("other");
  record();
  outputOf("pactl suspend-source other 1");
  ASSERT_TRUE(executor.waitUntil([&] { return listening.changes() > 0; }));
  input.stop();
}

/// A device hands its samples over in lumps. Each that arrives says how much the device had heard by then at
/// the least, and it goes on hearing at its rate: counted so against the clock, nothing that was heard before
/// the stop may be missing, wherever in a lump the stop falls.
TEST_F(PulseAudioInputTest, AStopDrainsWhatWasHeardByThen) {
  const PulseModule source("module-null-source source_name=other rate=16000 channels=1");
  const DefaultSource chosen("other");
  constexpr double rate = 16'000;
  constexpr double tolerance = 0.002 * rate;
  for (int round = 0; round < 12; ++round) {
    struct Count {
      std::mutex mutex;
      double frames = 0;
      double ahead = -1e18;  // frames heard at the clock's zero, if the device had run since then

      static double clockInFrames() {
        return std::chrono::duration<double>(RealClock::now().time_since_epoch()).count() * rate;
      }
    };
    Count count;
    AudioInput::FragmentHandler onFragment = [&count](std::span<const float> fragment, AudioFormat) {
      const std::lock_guard lock(count.mutex);
      count.frames += static_cast<double>(fragment.size());
      count.ahead = std::max(count.ahead, count.frames - Count::clockInFrames());
    };
    Awaiting<Outcome> starting(input.start(std::move(onFragment), [] {}));
    ASSERT_TRUE(executor.waitUntil([&] { return starting.done(); }));
    const auto until = RealClock::now() + 60ms + round * 3ms;
    while (RealClock::now() < until) {
    }
    const auto stopped = Count::clockInFrames();
    double ahead = 0;
    {
      const std::lock_guard lock(count.mutex);
      ahead = count.ahead;
    }
    input.stop();
    EXPECT_GE(count.frames, stopped + ahead - tolerance) << "stop " << round;
  }
}

/// The sink plays a counter, so that every lost, doubled or exchanged sample would show.
TEST_F(PulseAudioInputTest, LosesNothingWhileTheMainThreadIsBusy) {
  constexpr int seconds = 5;
  constexpr int period = 30'000;
  record();
  const std::jthread playing([] {
    std::vector<std::int16_t> counter;
    for (int frame = 0; frame < seconds * 48'000; ++frame)
      counter.insert(counter.end(), 2, static_cast<std::int16_t>(frame % period + 1));
    PulsePlayer player("mic");
    player.write(counter);
  });
  const auto isLoud = [](float sample) { return sample != 0; };
  const auto loudFrames = [&] { return std::ranges::count_if(listening.samples(), isLoud) / 2; };
  ASSERT_TRUE(executor.waitUntil([&] { return loudFrames() > 0; }));
  for (int second = 1; second < seconds; ++second) {
    // The main thread does nothing for us for a second.
    const auto busyUntil = RealClock::now() + 1s;
    while (RealClock::now() < busyUntil) {
    }
    executor.runUntilIdle();
  }
  constexpr float last = static_cast<float>((seconds * 48'000 - 1) % period + 1) / 32'768;
  const auto isLast = [](float sample) { return std::abs(sample - last) < 1e-6F; };
  const auto lastPlayed = [&] { return std::ranges::count_if(listening.samples(), isLast) / 2; };
  ASSERT_TRUE(executor.waitUntil([&] { return lastPlayed() == seconds * 48'000 / period; }));
  input.stop();
  const auto samples = listening.samples();
  auto at = static_cast<std::size_t>(std::ranges::find_if(samples, isLoud) - samples.begin());
  // A sink takes back what it had mixed ahead when a player joins, but not from its monitor: the first few
  // milliseconds of the player are not the recording's to lose.
  const int first = static_cast<int>(std::lround(samples[at] * 32'768)) - 1;
  ASSERT_LT(first, 4'800);
  for (int frame = first; frame < seconds * 48'000; ++frame, at += 2) {
    ASSERT_LT(at + 1, samples.size());
    const auto expected = static_cast<float>(frame % period + 1) / 32'768;
    ASSERT_NEAR(samples[at], expected, 1e-6) << "frame " << frame;
    ASSERT_EQ(samples[at], samples[at + 1]);
  }
  EXPECT_EQ(listening.changes(), 0);
}
