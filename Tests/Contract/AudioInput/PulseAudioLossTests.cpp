// A sound server that is not there, loses its last source, freezes and dies. One story, because a server dies
// only once; it is private to this run.

#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Platform/Linux/PulseAudio/PulseAudioSoundPlayer.h"
#include "Support/Awaiting.h"
#include "Support/Listening.h"
#include "Support/Pulse.h"
#include "Support/Testing.h"

namespace {

using Outcome = std::expected<AudioFormat, AudioInputError>;

class PulseAudioLossTest : public ::testing::Test {
 protected:
  Outcome record(PulseAudioInput& which, Listening& listening) {
    Awaiting<Outcome> starting(which.start(listening.onFragment(), listening.onChange()));
    if (!executor.waitUntil([&] { return starting.done(); })) ADD_FAILURE() << "the start hangs";
    return starting.done() ? *starting : std::unexpected(AudioInputError::notStarted);
  }

  ManualExecutor executor;
  PulseAudioInput input{executor, {"Murmel test", std::nullopt}};
  PulseAudioSoundPlayer player{{"Murmel test", std::nullopt}};
};

}  // namespace

TEST_F(PulseAudioLossTest, NoServerIsSaidAtOnce) {
  PulseAudioInput nowhere(executor, {"Murmel test", "unix:/nonexistent/native"});
  for (int round = 0; round < 2; ++round) {
    Listening listening;
    const auto outcome = record(nowhere, listening);
    ASSERT_FALSE(outcome.has_value());
    EXPECT_EQ(outcome.error(), AudioInputError::noServer);
    EXPECT_FALSE(listening.held());
    EXPECT_EQ(listening.changes(), 0);
  }
  PulseAudioSoundPlayer silent({"Murmel test", "unix:/nonexistent/native"});
  silent.play(SystemSound::tink);
  silent.play(SystemSound::pop);
}

TEST_F(PulseAudioLossTest, AServerWithTroubles) {
  const auto server = static_cast<pid_t>(std::stol(std::getenv("MURMEL_PULSE_PID")));

  // The last source goes away under a recording.
  Listening orphaned;
  ASSERT_TRUE(record(input, orphaned).has_value());
  outputOf("pactl unload-module module-null-sink");
  EXPECT_TRUE(executor.waitUntil([&] { return orphaned.changes() > 0; }));
  input.stop();
  EXPECT_FALSE(orphaned.held());

  Listening none;
  const auto withoutSource = record(input, none);
  ASSERT_FALSE(withoutSource.has_value());
  EXPECT_EQ(withoutSource.error(), AudioInputError::noDevice);

  {
    // What the server makes up when there is no hardware is no microphone.
    const PulseModule madeUp("module-null-sink sink_name=auto_null");
    Listening nothing;
    const auto outcome = record(input, nothing);
    ASSERT_FALSE(outcome.has_value());
    EXPECT_EQ(outcome.error(), AudioInputError::noDevice);
  }

  // A frozen server: the start gives up, the stop of a recording comes back.
  outputOf("pactl load-module module-null-sink sink_name=mic");
  outputOf("pactl set-default-source mic.monitor");
  Listening frozen;
  ASSERT_TRUE(record(input, frozen).has_value());
  ASSERT_EQ(::kill(server, SIGSTOP), 0);
  input.stop();
  player.play(SystemSound::tink);
  {
    Listening waiting;
    Awaiting<Outcome> starting(input.start(waiting.onFragment(), waiting.onChange()));
    executor.advance(4'999ms);
    EXPECT_FALSE(starting.done());
    executor.advance(1ms);
    ASSERT_TRUE(starting.done());
    ASSERT_FALSE(starting->has_value());
    EXPECT_EQ(starting->error(), AudioInputError::notStarted);
    EXPECT_FALSE(waiting.held());
  }
  ASSERT_EQ(::kill(server, SIGCONT), 0);

  // It dies.
  Listening dying;
  ASSERT_TRUE(record(input, dying).has_value());
  ASSERT_EQ(::kill(server, SIGKILL), 0);
  EXPECT_TRUE(executor.waitUntil([&] { return dying.changes() > 0; }));
  input.stop();
  Listening dead;
  const auto afterwards = record(input, dead);
  ASSERT_FALSE(afterwards.has_value());
  EXPECT_EQ(afterwards.error(), AudioInputError::noServer);
  player.play(SystemSound::pop);
}
