#include "Support/Pipe.h"
#include "Support/Testing.h"
#include "WorkerProcess/WorkerChannel.h"

namespace {

constexpr std::string_view readyLine = "{\"mrm_worker_protocol\":1,\"event\":\"ready\"}\n";
constexpr auto never = 24h;  // longer than a test may take

/// Both pipes of a worker that is the test itself.
class WorkerChannelTest : public ::testing::Test {
 protected:
  void say(std::string_view text) const {
    ASSERT_EQ(::write(output.writeEnd.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  /// The event of the next message, or the error in angle brackets.
  std::string read(Duration limit = never) {
    const auto message = channel.readMessage(limit);
    return message ? message->event : "<" + message.error().detail() + ">";
  }
  std::string write(std::string_view line, Duration limit = never) {
    const auto written = channel.writeLine(line, limit);
    return written ? "written" : "<" + written.error().detail() + ">";
  }

  SystemClock clock;
  WorkerCancellation cancellation;
  Pipe input, output;
  WorkerChannel channel{input.writeEnd.get(), output.readEnd.get(), clock, cancellation};
};

}  // namespace

TEST_F(WorkerChannelTest, ReturnsWhatIsBufferedEvenWhenThereIsNoTime) {
  say(std::string(readyLine) + std::string(readyLine));
  EXPECT_EQ(read(), "ready");
  EXPECT_EQ(read(0s), "ready");
  EXPECT_EQ(read(0s), "<worker response timed out>");
}

TEST_F(WorkerChannelTest, StaysSmallInAFloodAndFindsItsFeetAgain) {
  const std::jthread flood([&] {
    const std::string chunk(1 << 20, 'x');
    for (int megabyte = 0; megabyte < 32; ++megabyte) say(chunk);
    say("\n" + std::string(readyLine));
  });
  EXPECT_EQ(read(), "ready");
  EXPECT_LT(channel.bufferedBytes(), 2 * WorkerChannel::longestLine);
}

TEST_F(WorkerChannelTest, WritesALineWhileTheWorkerReadsAndTalks) {
  const std::string line(5'000'000, 'r');
  std::string received;
  const std::jthread worker([&] {
    // More than a pipe holds: a channel that does not listen while it writes would wait for ever.
    for (int count = 0; count < 5'000; ++count) say("{\"mrm_worker_protocol\":1,\"event\":\"progress\"}\n");
    std::array<char, 65'536> chunk{};
    while (received.size() <= line.size()) {
      const auto count = ::read(input.readEnd.get(), chunk.data(), chunk.size());
      received.append(chunk.data(), static_cast<std::size_t>(count));
    }
    say(readyLine);
  });
  EXPECT_EQ(write(line), "written");
  int progress = 0;
  std::string event;
  while ((event = read()) == "progress") ++progress;
  EXPECT_EQ(event, "ready");
  EXPECT_EQ(progress, 5'000);
  EXPECT_EQ(received, line + '\n');
}

TEST_F(WorkerChannelTest, SaysWhichHandleIsMissing) {
  WorkerChannel none(-1, -1, clock, cancellation);
  EXPECT_EQ(none.readMessage(never).error(), MRMError::workerFailed("worker output unavailable"));
  EXPECT_EQ(none.writeLine("request", never).error(), MRMError::workerFailed("worker input unavailable"));
}

TEST_F(WorkerChannelTest, SaysWhenTheOutputCannotBeWaitedFor) {
  WorkerChannel closed(input.writeEnd.get(), 1'000'000, clock, cancellation);
  EXPECT_EQ(closed.readMessage(never).error(), MRMError::workerFailed("worker response unavailable"));
}

TEST_F(WorkerChannelTest, CancellationEndsWaitingForGood) {
  const std::jthread canceller([&] { cancellation.cancel(); });
  EXPECT_EQ(read(), "<worker exited unexpectedly>");
  EXPECT_EQ(write(std::string(5'000'000, 'r')), "<worker exited unexpectedly>");
}

TEST_F(WorkerChannelTest, AnInterruptedWaitGoesOn) {
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) {};  // without SA_RESTART
  ::sigaction(SIGUSR1, &action, &before);
  const auto reader = ::pthread_self();
  std::jthread interrupter([&](const std::stop_token& stop) {
    for (int count = 0; count < 100; ++count) ::pthread_kill(reader, SIGUSR1);
    say(readyLine);
    while (!stop.stop_requested()) std::this_thread::yield();
  });
  EXPECT_EQ(read(), "ready");
  interrupter.request_stop();
  interrupter.join();
  ::sigaction(SIGUSR1, &before, nullptr);
}
