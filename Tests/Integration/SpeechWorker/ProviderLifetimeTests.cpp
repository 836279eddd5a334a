#include "Integration/SpeechWorker/ProviderWithWorker.h"

#include <future>

namespace {

/// Longer than a test may take: whoever waits for it makes the test fail.
void waitForever(WorkerLimits& limits) {
  limits.start = limits.shortestResponse = limits.longestResponse = 24h;
}

}  // namespace

TEST_F(ProviderWithWorker, AnswersInOrderFromOneWorkerAndPassesTheLanguageOn) {
  script("ready\nserve");
  const auto first = start(2);
  const auto second = start(4, "ru");
  const auto third = start(0);
  EXPECT_EQ(described(await(*third)), "id=3 rate=16000 language=none bytes=0");
  ASSERT_TRUE(first->done() && second->done());
  EXPECT_EQ(described(**first), "id=1 rate=16000 language=none bytes=2");
  EXPECT_EQ(described(**second), "id=2 rate=16000 language=ru bytes=4");
  EXPECT_EQ((**first)->providerID, FluidAudioProvider::identifier);
  EXPECT_EQ(starts(), 1);
}

TEST_F(ProviderWithWorker, TakesTenMinutesOfAudioInOneRequest) {
  script("ready\nserve");
  EXPECT_EQ(ask(10 * 60 * 32'000), "id=1 rate=16000 language=none bytes=19200000");
}

TEST_F(ProviderWithWorker, LeavesTheMainThreadFreeWhileItWaits) {
  waitForever(configuration.limits);
  script("ready\nread\nstall");
  const auto request = start();
  int ticks = 0;
  const auto timer = executor.after(1s, [&] { ++ticks; });
  executor.post([&] { ++ticks; });
  executor.advance(2s);
  EXPECT_EQ(ticks, 2);
  EXPECT_FALSE(request->done());
}

TEST_F(ProviderWithWorker, AnswersWaitingRequestsWhenItIsReleased) {
  waitForever(configuration.limits);
  script("ignore-term\nready\nread\nstall");
  const auto running = start();
  const auto waiting = start();
  ASSERT_TRUE(executor.waitUntil([&] { return starts() == 1; }));
  releaseProvider();
  EXPECT_EQ(described(await(*running)), "<worker exited unexpectedly>");
  EXPECT_EQ(described(await(*waiting)), "<worker exited unexpectedly>");
  EXPECT_EQ(starts(), 1);
}

TEST_F(ProviderWithWorker, EndsAWorkerThatDoesNotReadAtOnceWhenItIsReleased) {
  waitForever(configuration.limits);
  script("ready\nstall");
  auto request = start(8'000'000);
  ASSERT_TRUE(executor.waitUntil([&] { return starts() == 1; }));
  request.reset();
  releaseProvider();  // hangs unless the writing is interrupted
  EXPECT_FALSE(hasChildren());
}

TEST_F(ProviderWithWorker, TellsThatTheWarmUpFailedWhenItIsReleasedMeanwhile) {
  waitForever(configuration.limits);
  script("stall");
  std::vector<bool> told;
  provider().startWarmup([&](bool value) { told.push_back(value); });  // runs
  provider().startWarmup([&](bool value) { told.push_back(value); });  // waits behind it
  ASSERT_TRUE(executor.waitUntil([&] { return starts() == 1; }));
  releaseProvider();
  ASSERT_TRUE(executor.waitUntil([&] { return told.size() == 2; }));
  EXPECT_EQ(told, (std::vector{false, false}));
}

TEST_F(ProviderWithWorker, DoesNotBotherTheWorkerWithRequestsThatWereGivenUp) {
  std::promise<void> mayStart;
  configuration.modelIntegrityCheck = [gate = mayStart.get_future().share()](const std::filesystem::path&) {
    gate.wait();
    return true;
  };
  script("ready\nserve");
  const auto first = start();
  start()->cancel();
  const auto last = start();
  mayStart.set_value();
  EXPECT_EQ(described(await(*last)), "id=2 rate=16000 language=none bytes=3200");
}

TEST_F(ProviderWithWorker, ReplacesAWorkerThatEndedBetweenTwoRequests) {
  pid_t worker = 0;
  configuration.runningProcessIntegrityCheck = [&](const ChildProcess& process,
                                                   const std::filesystem::path&) {
    worker = process.identifier();
    return true;
  };
  script("ready\nread\nanswer\nexit 0", 1);
  script("ready\nserve");
  EXPECT_EQ(ask(), "id=1 rate=16000 language=none bytes=3200");
  ASSERT_TRUE(executor.waitUntil([&] { return hasEnded(worker); }));
  EXPECT_EQ(ask(), "id=2 rate=16000 language=none bytes=3200");
  EXPECT_EQ(starts(), 2);
}

TEST_F(ProviderWithWorker, LetsAWorkerGoThatNobodyUsesAndHasANewOneReadyWhenAsked) {
  idleLimit = 10min;
  script("ready\nserve");
  for (const std::size_t life : {1, 2}) {
    const Awaiting<Result<void>> ready(provider().prepare());
    ASSERT_TRUE(executor.waitUntil([&] { return ready.done(); }));
    executor.advance(9min);
    EXPECT_EQ(ask().substr(0, 4), "id=" + std::to_string(life)) << "which begins the time anew";
    executor.advance(9min);
    EXPECT_TRUE(hasChildren());
    EXPECT_EQ(starts(), life);
    executor.advance(2min);
    ASSERT_TRUE(executor.waitUntil([&] { return !hasChildren(); }));
  }
  EXPECT_EQ(executor.pendingTimers(), 0U);
}

TEST_F(ProviderWithWorker, PassesTheReasonOfAFailedLaunchOn) {
  configuration.workerURL = model.path() / "missing";
  EXPECT_EQ(ask(), "<cannot open the executable: No such file or directory>");
}
