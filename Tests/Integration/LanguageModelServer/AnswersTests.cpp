#include "Integration/LanguageModelServer/ServerBench.h"

TEST_F(ServerBench, AnAnswerBecomesFormattedOrRawText) {
  constexpr auto formatted = "Hello world how are you.";
  constexpr auto raw = "RAW";
  struct Row {
    const char* answer;
    const char* expected;
    Duration limit = 30s;  // less only for servers that never come to an end
  };
  for (const auto& row : std::vector<Row>{
           {"format", formatted},
           {"status 500", raw},
           {"silent", raw, 100ms},
           {"drip", raw, 100ms},
           {"die", raw},
           {"body []", raw},
           {"say Hello, world! How are you?", "Hello, world! How are you?"},
           {"say <think>\\nThe user greets.\\n</think>\\n\\nHello, world! How are you?",
            "Hello, world! How are you?"},
           {"say I'm fine, thank you for asking!", raw},
           {"say", raw},
           {"say {key}", raw},
           {"say Bonjour le monde, comment allez-vous ?", raw},
           // What is added, removed or replaced never arrives; what stands at the words does.
           {"say {key} {text}!", "hello world how are you!"},
           {"say Sure! Hello, world, how are we?", "Hello, world, how are you?"},
           {"say Hello, world.", "Hello, world. how are you"},
       }) {
    SCOPED_TRACE(row.answer);
    releasePool();
    settings.limits.asking.request = row.limit;
    script(std::string("answer ") + row.answer + "\nanswer format");
    ASSERT_TRUE(prepare()) << diagnostic();
    EXPECT_EQ(refine("hello world how are you"), row.expected);
  }
}

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
