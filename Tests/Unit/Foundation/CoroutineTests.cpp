#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Async/Task.h"
#include "Support/Testing.h"

#include <variant>

namespace {

using Journal = std::vector<std::string>;

/// Notes when it goes.
class Witness {
 public:
  Witness(Journal& journal, std::string name) : journal_(&journal), name_(std::move(name)) {}
  Witness(Witness&& other) noexcept : journal_(std::exchange(other.journal_, nullptr)), name_(other.name_) {}
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  Witness& operator=(Witness&&) = delete;
  ~Witness() {
    if (journal_) journal_->push_back("~" + name_);
  }

 private:
  Journal* journal_;
  std::string name_;
};

Task<void> waitFor(OneShotReceiver<std::string> receiver, Journal& journal, std::string name) {
  const Witness witness(journal, name);
  const auto value = co_await receiver;
  journal.push_back(name + ":" + value.value_or("dropped"));
}

Task<int> depth(int levels, OneShotReceiver<int> receiver) {
  if (levels == 0) {
    const auto value = co_await receiver;
    co_return value.value_or(-1);
  }
  auto inner = depth(levels - 1, receiver);
  const int value = co_await inner;
  co_return value + 1;
}

Task<void> store(Task<int> task, std::optional<int>& result) {
  result = co_await task;
}

Task<std::unique_ptr<int>> failing(bool fails) {
  if (fails) throw std::runtime_error("broken");
  co_return std::make_unique<int>(7);
}

Task<void> catching(bool fails, Journal& journal) {
  auto task = failing(fails);
  try {
    const auto value = co_await task;
    journal.push_back(std::to_string(*value));
  } catch (const std::runtime_error& error) {
    journal.push_back(error.what());
  }
}

Task<void> stepThrough(int steps, int& done) {
  for (int step = 0; step < steps; ++step) {
    auto [sender, receiver] = makeOneShot<std::monostate>();
    sender.send({});
    co_await receiver;
    ++done;
  }
}

}  // namespace

TEST(Task, StartsWhenAwaitedAndEndsWithItsOwner) {
  Journal journal;
  auto [sender, receiver] = makeOneShot<std::string>();
  {
    const auto never = waitFor(receiver, journal, "unstarted");
    EXPECT_TRUE(journal.empty());
  }
  EXPECT_TRUE(journal.empty()) << "nothing of it ever ran";
}

TEST(Task, PassesValuesAndExceptionsThroughNestedTasks) {
  Scope scope;
  std::optional<int> result;
  auto [sender, receiver] = makeOneShot<int>();
  scope.start(store(depth(1'000, receiver), result));
  EXPECT_FALSE(result);
  sender.send(5);
  EXPECT_EQ(result, 1'005);

  Journal journal;
  scope.start(catching(true, journal));
  scope.start(catching(false, journal));
  EXPECT_EQ(journal, (Journal{"broken", "7"}));
  EXPECT_EQ(scope.size(), 0U);
}

TEST(OneShot, GivesAValueSentBeforeOrAfterTheWaitOrTellsThatNoneComes) {
  Journal journal;
  Scope scope;
  {
    auto [sender, receiver] = makeOneShot<std::string>();
    sender.send("early");
    sender.send("twice");
    scope.start(waitFor(receiver, journal, "a"));
  }
  {
    auto [sender, receiver] = makeOneShot<std::string>();
    scope.start(waitFor(receiver, journal, "b"));
    sender.send("late");
  }
  {
    auto [sender, receiver] = makeOneShot<std::string>();
    scope.start(waitFor(receiver, journal, "c"));
  }
  {
    auto [sender, receiver] = makeOneShot<std::string>();
    auto [other, otherReceiver] = makeOneShot<std::string>();
    scope.start(waitFor(receiver, journal, "d"));
    sender = std::move(other);
    journal.emplace_back("overwritten");
  }
  EXPECT_EQ(journal,
            (Journal{"a:early", "~a", "b:late", "~b", "c:dropped", "~c", "d:dropped", "~d", "overwritten"}));
}

TEST(Scope, CancelsByDestroyingFramesNewestFirst) {
  Journal journal;
  auto [firstSender, firstReceiver] = makeOneShot<std::string>();
  auto [secondSender, secondReceiver] = makeOneShot<std::string>();
  auto [thirdSender, thirdReceiver] = makeOneShot<std::string>();
  {
    Scope scope;
    scope.start(waitFor(firstReceiver, journal, "1"));
    scope.start(waitFor(secondReceiver, journal, "2"));
    scope.start(waitFor(thirdReceiver, journal, "3"));
    EXPECT_EQ(scope.size(), 3U);
    secondSender.send("x");
    EXPECT_EQ(scope.size(), 2U) << "a task that has ended is gone";
  }
  EXPECT_EQ(journal, (Journal{"2:x", "~2", "~3", "~1"}));
  firstSender.send("nobody waits");
  EXPECT_EQ(journal.size(), 4U);
}

TEST(Scope, CancelsWholeChainsAndCanGoOn) {
  Scope scope;
  std::optional<int> result;
  auto [sender, receiver] = makeOneShot<int>();
  scope.start(store(depth(100, receiver), result));
  scope.cancelAll();
  EXPECT_EQ(scope.size(), 0U);
  sender.send(1);
  EXPECT_FALSE(result);

  int done = 0;
  scope.start(stepThrough(100'000, done));  // awaits that are ready must not use up the stack
  EXPECT_EQ(done, 100'000);
}
