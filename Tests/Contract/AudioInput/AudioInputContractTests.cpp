// What every audio input promises: the microphone of a sound server and the fake.

#include "Platform/Fake/FakeAudioInput.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Support/Awaiting.h"
#include "Support/Listening.h"
#include "Support/Testing.h"

namespace {

using Outcome = std::expected<AudioFormat, AudioInputError>;

class FakeRig {
 public:
  ManualExecutor executor;
  std::optional<FakeAudioInput> input{executor};
  /// Lets the microphone hear something until `condition` holds.
  bool hearUntil(const std::function<bool()>& condition) {
    for (int fragment = 0; fragment < 1'000 && !condition(); ++fragment) {
      if (input) input->deliver(std::vector<float>(960 * 2, 0.5F));
      executor.runUntilIdle();
    }
    return condition();
  }
};

class PulseRig {
 public:
  ManualExecutor executor;
  std::optional<PulseAudioInput> input{std::in_place, executor, PulseServer{"Murmel test", std::nullopt}};
  bool hearUntil(const std::function<bool()>& condition) { return executor.waitUntil(condition); }
};

template <class Rig>
class AudioInputContract : public ::testing::Test {
 protected:
  AudioInput& input() { return *rig.input; }
  void record(Listening& listening) {
    Awaiting<Outcome> starting(input().start(listening.onFragment(), listening.onChange()));
    ASSERT_TRUE(rig.hearUntil([&] { return starting.done(); }));
    ASSERT_TRUE(starting->has_value());
  }
  /// Long enough for a few fragments, if anybody still listened.
  void letSomeTimePass() {
    int turns = 0;
    rig.hearUntil([&] { return ++turns > 4; });
  }

  Rig rig;
};

using Rigs = ::testing::Types<FakeRig, PulseRig>;
TYPED_TEST_SUITE(AudioInputContract, Rigs);

}  // namespace

TYPED_TEST(AudioInputContract, ARecordingBeginsWithItsFirstFragment) {
  Listening listening;
  Awaiting<Outcome> starting(this->input().start(listening.onFragment(), listening.onChange()));
  EXPECT_FALSE(starting.done());
  int fragmentsAtStart = 0;
  ASSERT_TRUE(this->rig.hearUntil([&] {
    if (!starting.done()) return false;
    fragmentsAtStart = listening.fragments();
    return true;
  }));
  ASSERT_TRUE(starting->has_value());
  EXPECT_GE(fragmentsAtStart, 1);
  EXPECT_GT((*starting)->sampleRate, 0);
  EXPECT_GT((*starting)->channelCount, 0U);
  ASSERT_TRUE(this->rig.hearUntil([&] { return listening.fragments() >= 5; }));
  this->input().stop();
  for (const auto& format : listening.formats()) EXPECT_EQ(format, **starting);
  EXPECT_EQ(listening.sampleCount() % (*starting)->channelCount, 0U) << "whole frames";
  EXPECT_EQ(listening.changes(), 0);
}

TYPED_TEST(AudioInputContract, NothingIsHeardAndNothingKeptAfterTheStop) {
  Listening listening;
  this->record(listening);
  this->input().stop();
  const auto heard = listening.sampleCount();
  EXPECT_FALSE(listening.held()) << "the handlers are gone";
  this->letSomeTimePass();
  EXPECT_EQ(listening.sampleCount(), heard);
  this->input().stop();
}

TYPED_TEST(AudioInputContract, RecordsAgainAndAgain) {
  for (int round = 0; round < 5; ++round) {
    Listening listening;
    this->record(listening);
    const auto heard = listening.sampleCount();
    ASSERT_TRUE(this->rig.hearUntil([&] { return listening.sampleCount() > heard; }));
    this->input().stop();
  }
}

TYPED_TEST(AudioInputContract, OneRecordingAtATime) {
  Listening first, second;
  this->record(first);
  Awaiting<Outcome> refused(this->input().start(second.onFragment(), second.onChange()));
  ASSERT_TRUE(this->rig.hearUntil([&] { return refused.done(); }));
  ASSERT_FALSE(refused->has_value());
  EXPECT_EQ(refused->error(), AudioInputError::notStarted);
  const auto heard = first.sampleCount();
  EXPECT_TRUE(this->rig.hearUntil([&] { return first.sampleCount() > heard; })) << "the first one goes on";
  EXPECT_EQ(second.fragments(), 0);
  this->input().stop();
}

TYPED_TEST(AudioInputContract, ACancelledStartLeavesNothingBehind) {
  Listening cancelled;
  {
    Awaiting<Outcome> starting(this->input().start(cancelled.onFragment(), cancelled.onChange()));
    this->input().stop();  // nothing records yet
    EXPECT_FALSE(starting.done());
  }
  EXPECT_FALSE(cancelled.held());
  const auto heard = cancelled.sampleCount();
  Listening listening;
  this->record(listening);
  this->letSomeTimePass();
  EXPECT_EQ(cancelled.sampleCount(), heard);
  this->input().stop();
}

TYPED_TEST(AudioInputContract, ANeverAwaitedStartDoesNothing) {
  Listening never;
  {
    const auto unused = this->input().start(never.onFragment(), never.onChange());
    this->letSomeTimePass();
  }
  EXPECT_EQ(never.fragments(), 0);
  Listening listening;
  this->record(listening);
  this->input().stop();
}

TYPED_TEST(AudioInputContract, MayGoAwayWhileItRecords) {
  Listening listening;
  this->record(listening);
  this->rig.input.reset();
  const auto heard = listening.sampleCount();
  EXPECT_FALSE(listening.held());
  this->letSomeTimePass();
  EXPECT_EQ(listening.sampleCount(), heard);
}
