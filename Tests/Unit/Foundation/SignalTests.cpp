#include "Foundation/Async/Signal.h"
#include "Foundation/Registration.h"
#include "Support/Testing.h"

TEST(Registration, WithdrawsExactlyOnce) {
  int withdrawn = 0;
  const auto make = [&withdrawn] { return Registration([&withdrawn] { ++withdrawn; }); };
  {
    auto first = make();
    Registration second(std::move(first));
    EXPECT_FALSE(first);
    EXPECT_TRUE(second);
    auto& self = second;
    second = std::move(self);
    EXPECT_TRUE(second) << "moving onto itself keeps it";
    second = make();
    EXPECT_EQ(withdrawn, 1) << "an overwritten registration is withdrawn";
    second.reset();
    second.reset();
    EXPECT_EQ(withdrawn, 2);
    const auto third = make();
    EXPECT_EQ(withdrawn, 2);
  }
  EXPECT_EQ(withdrawn, 3);
}

TEST(Registration, MayBeResetFromInsideItsOwnWithdrawal) {
  int withdrawn = 0;
  Registration registration;
  registration = Registration([&] {
    ++withdrawn;
    registration.reset();
  });
  registration.reset();
  EXPECT_EQ(withdrawn, 1);
}

TEST(Signal, TellsSubscribersInOrderUntilTheyLeave) {
  Signal<const std::string&, int> signal;
  std::vector<std::string> heard;
  EXPECT_FALSE(signal.hasSubscribers());
  auto first = signal.subscribe([&](const std::string& text, int) { heard.push_back("1" + text); });
  const auto second = signal.subscribe([&](const std::string& text, int) { heard.push_back("2" + text); });
  signal.emit("a", 0);
  first.reset();
  signal.emit("b", 0);
  EXPECT_EQ(heard, (std::vector<std::string>{"1a", "2a", "2b"}));
  EXPECT_TRUE(signal.hasSubscribers());
}

TEST(Signal, ToleratesChangesWhileItIsEmitting) {
  Signal<> signal;
  std::vector<int> heard;
  std::optional<Registration> own, later, added;
  own = signal.subscribe([&] {
    heard.push_back(1);
    own.reset();  // its own handler goes on running
    later.reset();
    added = signal.subscribe([&] { heard.push_back(4); });
    heard.push_back(2);
  });
  later = signal.subscribe([&] { heard.push_back(3); });
  signal.emit();
  EXPECT_EQ(heard, (std::vector{1, 2})) << "withdrawn is not called, added not yet";
  signal.emit();
  EXPECT_EQ(heard, (std::vector{1, 2, 4}));
}

TEST(Signal, MayEmitAgainAndMayBeDestroyedWhileEmitting) {
  std::optional<Signal<int>> signal(std::in_place);
  std::vector<int> heard;
  const auto first = signal->subscribe([&](int depth) {
    heard.push_back(depth);
    if (depth < 2) signal->emit(depth + 1);
    if (depth == 0) signal.reset();
  });
  const auto second = signal->subscribe([&](int depth) { heard.push_back(10 + depth); });
  signal->emit(0);
  EXPECT_EQ(heard, (std::vector{0, 1, 2, 12, 11, 10}));
}
