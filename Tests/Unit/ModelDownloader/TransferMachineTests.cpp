#include "Foundation/Text/LineSplitter.h"
#include "Support/Testing.h"
#include "Workers/ModelDownloader/TransferMachine.h"

namespace murmel::downloader {
namespace {

using Machine = TransferMachine;
using std::chrono::seconds;

const MRMTransferError connectionLost{std::string(urlErrorDomain), urlErrorNetworkConnectionLost, {}};

Duration delayOf(const Machine::Next& next) {
  const auto* retry = std::get_if<Machine::Retry>(&next);
  return retry == nullptr ? Duration(-1) : retry->delay;
}

TEST(TransferMachine, WaitsLongerAfterEveryFailureAndGivesUpAfterTheFifthRetry) {
  Machine machine(1000, 0, {}, {});
  for (const int delay : {1, 2, 4, 8, 16}) {
    (void)machine.begin({});
    EXPECT_EQ(delayOf(machine.end(connectionLost, {})), seconds(delay));
  }
  (void)machine.begin({});
  EXPECT_TRUE(std::holds_alternative<Machine::Fail>(machine.end(connectionLost, {})));
}

TEST(TransferMachine, ProgressForgivesEarlierFailures) {
  constexpr auto piece = Machine::progressThatForgivesFailures;
  Machine machine(100 * piece, 0, {}, {});
  for (int attempt = 0; attempt < 50; ++attempt) {
    (void)machine.begin({});
    if (attempt == 0) {
      (void)machine.head({.status = 200, .contentLength = 100 * piece}, {});
    } else {
      (void)machine.head({.status = 206, .contentRange = ContentRange{machine.received(), 100 * piece}}, {});
    }
    ASSERT_TRUE(machine.data(static_cast<std::size_t>(piece), {}));
    EXPECT_EQ(delayOf(machine.end(connectionLost, {})), seconds(1)) << attempt;
  }
}

TEST(TransferMachine, WaitsAsLongAsTheServerAsksWithinReason) {
  for (const auto& [asked, waited] : {std::pair{0, 1}, {7, 7}, {86'400, 300}}) {
    Machine machine(1000, 0, {}, {});
    (void)machine.begin({});
    (void)machine.head({.status = 503, .retryAfter = seconds(asked)}, {});
    EXPECT_EQ(delayOf(machine.end(std::nullopt, {})), seconds(waited)) << asked;
  }
}

TEST(TransferMachine, ChecksACompletePartialFileInsteadOfAskingAgain) {
  Machine known(1000, 1000, {}, {});
  EXPECT_TRUE(std::holds_alternative<Machine::Verify>(known.begin({})));

  // The size is not known beforehand: the server says that there is no more.
  Machine unknown(std::nullopt, 1000, {}, {});
  (void)unknown.begin({});
  EXPECT_EQ(unknown.head({.status = 416, .contentRange = ContentRange::parse("bytes */1000")}, {}),
            Machine::HeadVerdict::refuse);
  EXPECT_TRUE(std::holds_alternative<Machine::Verify>(unknown.end(std::nullopt, {})));
}

TEST(TransferMachine, CallsSilenceAndEndlessnessOverdue) {
  const Instant start{};
  Machine machine(1 << 30, 0, {}, {});
  (void)machine.begin(start);
  (void)machine.head({.status = 200}, start + seconds(599));
  EXPECT_FALSE(machine.overdue(start + seconds(1198)));
  EXPECT_TRUE(machine.overdue(start + seconds(1199)));
  // Silence is worth another attempt, a whole day is not.
  EXPECT_EQ(delayOf(machine.end(machine.overdue(start + seconds(1199)), start + seconds(1199))), seconds(1));
  (void)machine.begin(start + seconds(86'399));
  const auto late = machine.overdue(start + seconds(86'400));
  ASSERT_TRUE(late);
  EXPECT_TRUE(std::holds_alternative<Machine::Fail>(machine.end(late, start + seconds(86'400))));
}

TEST(ContentRange, ReadsWhatServersSayAndNothingElse) {
  const auto range = ContentRange::parse("bytes 5-9/10");
  ASSERT_TRUE(range);
  EXPECT_EQ(range->first, 5);
  EXPECT_EQ(range->total, 10);
  EXPECT_EQ(ContentRange::parse("bytes 5-9/*")->total, std::nullopt);
  for (const auto* wrong : {"", "bytes", "bytes 5-9", "items 5-9/10", "bytes 9-5/10", "bytes -5-9/10",
                            "bytes 5-/10", "bytes 5-9/ten", "bytes 5-9/99999999999999999999"}) {
    EXPECT_FALSE(ContentRange::parse(wrong)) << wrong;
  }
}

TEST(LineSplitter, AnnouncesALongLineOnceAndGoesOnAfterIt) {
  LineSplitter lines(4);
  const auto all = [&](std::string_view bytes) {
    lines.append(bytes);
    Strings result;
    while (const auto line = lines.next())
      result.push_back(line->tooLong ? "too long" : std::string(line->text));
    return result;
  };
  EXPECT_EQ(all("ab\ncd"), Strings{"ab"});
  EXPECT_EQ(all("ef\n\n"), (Strings{"cdef", ""}));
  EXPECT_EQ(all("12345"), Strings{"too long"});
  EXPECT_EQ(all("678"), Strings{});
  EXPECT_EQ(all("9\nab\n12345\ncd"), (Strings{"ab", "too long"}));
  EXPECT_EQ(all("\n"), Strings{"cd"});
}

}  // namespace
}  // namespace murmel::downloader
