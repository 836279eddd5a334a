// The cues, as a microphone beside the loudspeaker hears them: the default source of this private sound
// server is the monitor of its sink.

#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Platform/Linux/PulseAudio/PulseAudioSoundPlayer.h"
#include "Platform/Linux/PulseAudio/SystemSoundWave.h"
#include "Support/Awaiting.h"
#include "Support/Listening.h"
#include "Support/Testing.h"

#include <ranges>

namespace {

const PulseServer server{"Murmel test", std::nullopt};

float loudest(const std::vector<float>& samples) {
  float peak = 0;
  for (const float sample : samples) peak = std::max(peak, std::abs(sample));
  return peak;
}

}  // namespace

TEST(SystemSoundWave, BeginsAndEndsInSilenceAndStaysModest) {
  for (const auto sound : {SystemSound::tink, SystemSound::pop}) {
    for (const unsigned rate : {8'000U, 44'100U, 48'000U}) {
      const auto wave = systemSoundWave(sound, rate);
      EXPECT_GT(wave.size(), rate / 20U);
      EXPECT_LE(wave.size(), rate / 5U);
      EXPECT_GT(loudest(wave), 0.05F);
      EXPECT_LE(loudest(wave), 0.25F);
      EXPECT_EQ(wave.front(), 0);
      EXPECT_LT(std::abs(wave.back()), 0.001F);
    }
  }
  EXPECT_NE(systemSoundWave(SystemSound::tink, 8'000), systemSoundWave(SystemSound::pop, 8'000));
}

TEST(PulseAudioSoundPlayer, IsHeardOnceForEachCue) {
  ManualExecutor executor;
  PulseAudioInput microphone(executor, server);
  PulseAudioSoundPlayer player(server);
  using Outcome = std::expected<AudioFormat, AudioInputError>;
  for (const auto sound : {SystemSound::tink, SystemSound::pop, SystemSound::tink}) {
    Listening listening;
    Awaiting<Outcome> starting(microphone.start(listening.onFragment(), listening.onChange()));
    ASSERT_TRUE(executor.waitUntil([&] { return starting.done(); }));
    player.play(sound);
    const auto wave = systemSoundWave(sound, 48'000);
    const auto loud = [](float sample) { return std::abs(sample) > 0.001F; };
    const auto isOver = [&] {
      const auto samples = listening.samples();
      const auto first = std::ranges::find_if(samples, loud);
      // Stereo, and a fifth of a second more, in which nothing may follow.
      return samples.end() - first > static_cast<std::ptrdiff_t>(2 * wave.size() + 2 * 9'600);
    };
    ASSERT_TRUE(executor.waitUntil(isOver));
    microphone.stop();
    const auto samples = listening.samples();
    // A monitor misses the few milliseconds that its sink takes back when a player joins: the peak, here.
    EXPECT_GT(loudest(samples), 0.05F);
    EXPECT_LE(loudest(samples), loudest(wave) + 0.001F);
    const auto first = std::ranges::find_if(samples, loud) - samples.begin();
    const auto last = samples.rend() - std::ranges::find_if(samples | std::views::reverse, loud);
    EXPECT_LE(last - first, static_cast<std::ptrdiff_t>(2 * wave.size()));
  }
}

TEST(PulseAudioSoundPlayer, MayGoAwayWhileItPlays) {
  PulseAudioSoundPlayer player(server);
  player.play(SystemSound::tink);
  player.play(SystemSound::pop);
}
