#include "Integration/SpeechWorker/ProviderWithWorker.h"

namespace {

constexpr std::size_t small = 3'200;
/// More than a pipe holds: the worker has to read for it to go through.
constexpr std::size_t large = 8'000'000;

struct Failure {
  const char* name;
  const char* script;
  const char* error;
  /// The number of the next request: a worker that never became ready was not asked.
  int nextID;
  std::size_t bytes = small;
  bool hurried = false;  ///< with short limits, because the worker will use them up
};

void PrintTo(const Failure& failure, std::ostream* stream) {
  *stream << failure.name;
}

#define READY "{\"mrm_worker_protocol\":1,\"event\":\"ready\"}"

constexpr auto failures = std::to_array<Failure>({
    {"EndsAtItsStart", "exit 3", "<worker exited unexpectedly>", 1},
    {"NeverBecomesReady", "stall", "<worker response timed out>", 1, small, true},
    {"SpeaksAnotherVersionAtItsStart", R"(print {"mrm_worker_protocol":2,"event":"ready"})",
     "<worker did not become ready>", 1},
    {"AnswersBeforeItIsReady", R"(print {"mrm_worker_protocol":1,"event":"result","id":1,"text":"x"})",
     "<worker did not become ready>", 1},
    {"CannotLoadItsModel", R"(print {"mrm_worker_protocol":1,"event":"error","error_type":"no memory"})",
     "<no memory>", 1},
    {"DiesDuringARequest", "ready\nread\ndie", "<worker exited unexpectedly>", 2},
    {"DiesBeforeItHasReadTheRequest", "ready\ndie", "<worker exited unexpectedly>", 2, large},
    {"EndsWithHalfALine", "ready\nread\ndribble {\"mrm_\nprint half\nexit 0", "<worker exited unexpectedly>",
     2},
    {"ClosesItsOutput", "ready\nread\nclose-output\nstall", "<worker exited unexpectedly>", 2},
    {"ClosesItsInput", "ready\nclose-input\nstall", "<worker input unavailable>", 2, large, true},
    {"SaysWhyItStopsReading",
     "ready\nprint {\"mrm_worker_protocol\":1,\"event\":\"error\",\"id\":1,\"error_type\":\"too "
     "much\"}\nexit 1",
     "<too much>", 2, large},
    {"Stalls", "ready\nread\nstall", "<worker response timed out>", 2, small, true},
    {"StallsAndWillNotGo", "ignore-term\nready\nread\nstall", "<worker response timed out>", 2, small, true},
    {"DoesNotRead", "ready\nstall", "<worker response timed out>", 2, large, true},
    {"FloodsWithoutALine", "ready\nread\nflood", "<worker response timed out>", 2, small, true},
    {"FloodsWithLines", "ready\nread\nflood-lines", "<worker response timed out>", 2, small, true},
    {"FloodsInsteadOfReading", "ready\nflood", "<worker response timed out>", 2, large, true},
    {"AnswersAnotherRequest",
     "ready\nread\nprint {\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":7,\"text\":\"x\"}",
     "<unexpected speech worker response>", 2},
    {"AnswersWithoutAnId",
     "ready\nread\nprint {\"mrm_worker_protocol\":1,\"event\":\"result\",\"text\":\"x\"}",
     "<unexpected speech worker response>", 2},
    {"AnswersInAnotherVersion",
     "ready\nread\nprint {\"mrm_worker_protocol\":2,\"event\":\"result\",\"id\":1,\"text\":\"x\"}",
     "<unexpected speech worker response>", 2},
    {"AnswersWithoutText", "ready\nread\nprint {\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":1}",
     "<unexpected speech worker response>", 2},
    {"IsReadyTwice", "ready\nready\nread\nstall", "<unexpected speech worker response>", 2},
    {"RefusesTheRequest",
     "ready\nread\nprint {\"mrm_worker_protocol\":1,\"event\":\"error\",\"id\":1,\"error_type\":\"bad "
     "audio\"}",
     "<bad audio>", 2},
    {"RefusesWithoutAReason", "ready\nread\nprint {\"mrm_worker_protocol\":1,\"event\":\"error\",\"id\":1}",
     "<unknown worker error>", 2},
});

class AWorkerThat : public ProviderWithWorker, public ::testing::WithParamInterface<Failure> {};

}  // namespace

TEST_P(AWorkerThat, FailsOneRequestAndTheNextGetsAFreshOne) {
  const auto& failure = GetParam();
  if (failure.hurried) {
    configuration.limits.start = 600ms;
    configuration.limits.shortestResponse = configuration.limits.longestResponse = 600ms;
    configuration.limits.terminationGrace = 20ms;
    configuration.limits.lastWords = 50ms;
  }
  script(failure.script, 1);
  script("ready\nserve");
  EXPECT_EQ(ask(failure.bytes), failure.error);
  EXPECT_FALSE(hasChildren()) << "the failed worker is still there";
  EXPECT_EQ(ask(), "id=" + std::to_string(failure.nextID) + " rate=16000 language=none bytes=3200");
  EXPECT_EQ(starts(), 2);
}

INSTANTIATE_TEST_SUITE_P(Provider, AWorkerThat, ::testing::ValuesIn(failures),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ProviderWithWorker, SkipsWhateverElseAWorkerPrints) {
  script(
      "print loading the model...\nprint {\"event\":\"ready\"}\nready\nread\nprint [1,2]\nwrite-megabytes "
      "3\nanswer");
  EXPECT_EQ(ask(), "id=1 rate=16000 language=none bytes=3200");
}

TEST_F(ProviderWithWorker, PutsSplitLinesTogetherAndTakesJoinedOnesApart) {
  script(
      "dribble " READY
      "\nread\ndribble {\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":1,\"text\":\"split \u0451\"}\n"
      "read\nprint {\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":2,\"text\":\"joined\"}\\n"
      "{\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":3,\"text\":\"early\"}\nread\nstall");
  EXPECT_EQ(ask(), "split \u0451");
  EXPECT_EQ(ask(), "joined");
  EXPECT_EQ(ask(), "early");
  EXPECT_EQ(starts(), 1);
}

TEST_F(ProviderWithWorker, KeepsAWorkerThatHeardNothing) {
  script(
      "ready\nread\nprint {\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":1,\"text\":\" \\u00a0 "
      "\"}\nserve");
  EXPECT_EQ(ask(), "<No speech was detected>");
  EXPECT_EQ(ask(), "id=2 rate=16000 language=none bytes=3200");
  EXPECT_EQ(starts(), 1);
}

TEST_F(ProviderWithWorker, RecoversUnknownTokensBeforeItJudgesTheText) {
  script(
      "ready\nread\nprint {\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":1,\"text\":\" вс<unk> \"}\n"
      "read\nprint {\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":2,\"text\":\"<unk>\"}\n"
      "read\nprint {\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":3,\"text\":\"<unk>\"}\n");
  EXPECT_EQ(ask(), "всё");
  EXPECT_EQ(ask(small, "en"), "<No speech was detected>");
  EXPECT_EQ(ask(small, "ru"), "Ё");
}
