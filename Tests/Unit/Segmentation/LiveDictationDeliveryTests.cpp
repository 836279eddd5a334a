#include "Delivery/LiveDictationDelivery.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Async/Timers.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/Testing.h"

namespace {

/// Inserts slowly, and refuses the pieces with the given numbers.
class LiveDelivery : public ::testing::Test {
 protected:
  static Task<bool> insert(LiveDelivery* test, SpokenText piece) {
    auto wait = sleepFor(test->executor, 10ms);
    co_await wait;
    test->offered.push_back(piece.reveal());
    co_return test->refused != static_cast<int>(test->offered.size());
  }

  static Task<void> deliverAll(LiveDictationDelivery* delivery, std::vector<std::string> phrases) {
    for (const auto& phrase : phrases) {
      auto append = delivery->append(SpokenText(phrase));
      co_await append;
    }
  }

  void deliver(std::vector<std::string> phrases) {
    scope.start(deliverAll(&delivery, std::move(phrases)));
    executor.advance(1s);
    ASSERT_EQ(scope.size(), 0U);
  }

  static std::string withoutUm(std::string text) {
    if (text.starts_with("um")) text.erase(0, 2);
    return text;
  }

  ManualExecutor executor;
  std::vector<std::string> offered;
  int refused = 0;
  LiveDictationDelivery delivery{withoutUm, [this](SpokenText piece) { return insert(this, piece); }};
  Scope scope;
};

TEST_F(LiveDelivery, PartsThePhrasesWithOneSpace) {
  deliver({"hello", "um \n", "  world\n", "um again"});
  EXPECT_EQ(offered, (std::vector<std::string>{"hello", " world", " again"}));
  EXPECT_EQ(delivery.text().reveal(), "hello world again");
  EXPECT_TRUE(delivery.remaining().empty());
  EXPECT_FALSE(delivery.blocked());
}

TEST_F(LiveDelivery, CollectsFromTheFirstRefusalOn) {
  refused = 2;
  deliver({"hello", "world", "again"});
  EXPECT_EQ(offered.size(), 2U) << "nothing is offered after a refusal";
  EXPECT_TRUE(delivery.blocked());
  EXPECT_EQ(delivery.remaining().reveal(), " world again");
  EXPECT_EQ(delivery.text().reveal(), "hello world again");
}

}  // namespace
