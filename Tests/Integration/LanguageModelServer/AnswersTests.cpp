#include "Integration/LanguageModelServer/ServerBench.h"

using namespace murmel;
using namespace std::chrono_literals;

namespace {

struct Row {
  const char* answer;
  const char* expected;
  /// Only for servers that never come to an end.
  std::chrono::milliseconds limit = 30s;
};

class ServerAnswers : public ServerBench, public ::testing::WithParamInterface<Row> {};

}  // namespace

TEST_P(ServerAnswers, BecomeFormattedOrRawText) {
  settings.limits.asking.request = GetParam().limit;
  script(std::string("answer ") + GetParam().answer + "\nanswer format");
  ASSERT_TRUE(prepare()) << diagnostic();
  EXPECT_EQ(refine("hello world how are you"), GetParam().expected);
}

constexpr auto formatted = "Hello world how are you.";
constexpr auto raw = "RAW";

INSTANTIATE_TEST_SUITE_P(
    Behaviours, ServerAnswers,
    ::testing::Values(Row{"format", formatted}, Row{"status 500", raw}, Row{"silent", raw, 100ms},
                      Row{"drip", raw, 100ms}, Row{"die", raw}, Row{"body []", raw},
                      Row{"say Hello, world! How are you?", "Hello, world! How are you?"},
                      Row{"say <think>\\nThe user greets.\\n</think>\\n\\nHello, world! How are you?",
                          "Hello, world! How are you?"},
                      Row{"say I'm fine, thank you for asking!", raw}, Row{"say", raw}, Row{"say {key}", raw},
                      Row{"say Bonjour le monde, comment allez-vous ?", raw},
                      // What is added, removed or replaced never arrives; what stands at the words does.
                      Row{"say {key} {text}!", "hello world how are you!"},
                      Row{"say Sure! Hello, world, how are we?", "Hello, world, how are you?"},
                      Row{"say Hello, world.", "Hello, world. how are you"}));

TEST_F(ServerBench, GivesUpAfterThreeSecondsByItself) {
  settings.limits.asking.request = QwenServerLimits().asking.request;
  script("answer silent\nanswer format");
  ASSERT_TRUE(prepare());
  const auto before = clock.now();
  EXPECT_EQ(refine("hello"), "RAW");
  const auto waited = clock.now() - before;
  EXPECT_GE(waited, 3s - 10ms);
  EXPECT_LT(waited, 3s + 50ms);
  EXPECT_EQ(refine("hello"), "Hello.") << "the server is asked again, and is the same";
  EXPECT_EQ(count("listening"), 1U);
}

TEST_F(ServerBench, AsksOneQuestionAtATime) {
  const auto gate = store.path() / "gate";
  script("answer hold " + gate.string() + "\nanswer format");
  ASSERT_TRUE(prepare());
  const auto refiner = provider();
  const auto other = provider();
  Awaiting<Answer> first(refining(*refiner, "first"));
  Awaiting<Answer> second(refining(*other, "second"));
  ASSERT_TRUE(executor.waitUntil([&] { return count("holding") == 1; }));
  EXPECT_FALSE(first.done() || second.done());
  std::ofstream(gate) << '.';
  EXPECT_EQ(described(second), "Second.");
  EXPECT_EQ(described(first), "First.");
  EXPECT_EQ(count("overlap"), 0U);
  EXPECT_EQ(count("listening"), 1U);
}

TEST_F(ServerBench, TheSecondQuestionGivesUpWhenItsOwnLimitPasses) {
  settings.limits.asking.request = 200ms;
  script("answer silent\nanswer silent");
  ASSERT_TRUE(prepare());
  const auto refiner = provider();
  Awaiting<Answer> first(refining(*refiner, "first"));
  Awaiting<Answer> second(refining(*refiner, "second"));
  const auto before = clock.now();
  EXPECT_EQ(described(second), "RAW");
  EXPECT_TRUE(first.done());
  // It had waited for the first one all that time: asking for as long once more would double the wait.
  EXPECT_LT(clock.now() - before, 2 * settings.limits.asking.request);
}

TEST_F(ServerBench, AQuestionThatIsGivenUpMakesRoomAtOnce) {
  script("answer silent\nanswer format");
  ASSERT_TRUE(prepare());
  const auto refiner = provider();
  Awaiting<Answer> first(refining(*refiner, "first"));
  Awaiting<Answer> never(refining(*refiner, "never asked"));
  ASSERT_TRUE(executor.waitUntil([&] { return count("question") == 1; }));
  never.cancel();
  first.cancel();
  EXPECT_EQ(refine("third"), "Third.");
  EXPECT_EQ(count("question"), 2U);
}

TEST_F(ServerBench, ARequestOutlivesEverybodyElse) {
  script("answer silent");
  ASSERT_TRUE(prepare());
  auto refiner = provider();
  Awaiting<Answer> asking(refining(*refiner, "hello"));
  ASSERT_TRUE(executor.waitUntil([&] { return count("question") == 1; }));
  refiner.reset();
  releasePool();
  EXPECT_EQ(described(asking), "RAW");
}

TEST_F(ServerBench, LeavesTheMainThreadFreeWhileItWaits) {
  script("answer silent");
  ASSERT_TRUE(prepare());
  const auto refiner = provider();
  Awaiting<Answer> asking(refining(*refiner, "hello"));
  int ticks = 0;
  const auto timer = executor.after(1s, [&] { ++ticks; });
  executor.advance(2s);
  EXPECT_EQ(ticks, 1);
  EXPECT_FALSE(asking.done());
}
