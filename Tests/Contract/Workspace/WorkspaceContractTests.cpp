#include "Support/Testing.h"
#include "Support/Wayland/WaylandTargetDesk.h"
#include "Support/X11/DesktopOfTargets.h"

template <class Desk>
class WorkspaceContract : public ::testing::Test {
 protected:
  WorkspaceContract() {
    subscription = workspace.onActivation([this](const RunningApplication& application) {
      told.push_back(application.client.processIdentifier);
    });
  }
  bool waitUntil(const std::function<bool()>& condition) { return desk.waitUntil(condition); }
  bool isInFront(pid_t process) {
    const auto front = workspace.frontmostApplication();
    return front && front->client.processIdentifier == process;
  }

  Desk desk;
  Workspace& workspace = desk.workspace();
  std::vector<pid_t> told;
  Registration subscription;
};

using Desks = ::testing::Types<FakeTargetDesk, X11TargetDesk, WaylandTargetDesk>;
TYPED_TEST_SUITE(WorkspaceContract, Desks);

TYPED_TEST(WorkspaceContract, NamesTheApplicationInFrontAndTellsOfSwitches) {
  EXPECT_FALSE(this->workspace.frontmostApplication()) << "an empty desktop";
  const auto one = this->desk.launch("One");
  const auto first = this->desk.identifierOf(one);
  ASSERT_TRUE(this->waitUntil([&] { return this->isInFront(first) && this->told == std::vector{first}; }));
  EXPECT_EQ(this->workspace.frontmostApplication()->bundleIdentifier, "One");
  EXPECT_FALSE(this->workspace.frontmostApplication()->isPanel);

  const auto two = this->desk.launch("Two");
  const auto second = this->desk.identifierOf(two);
  ASSERT_TRUE(this->waitUntil([&] { return this->told == std::vector{first, second}; }));
  this->desk.bringToFront(one);
  ASSERT_TRUE(this->waitUntil([&] { return this->told == std::vector{first, second, first}; }));
  EXPECT_FALSE(isSameApplication(*this->workspace.frontmostApplication(), RunningApplication{}));
}

TYPED_TEST(WorkspaceContract, BringsAnApplicationBackToTheFront) {
  const auto one = this->desk.launch("One");
  const auto handle = *this->workspace.frontmostApplication();
  const auto two = this->desk.launch("Two");
  EXPECT_FALSE(isSameApplication(*this->workspace.frontmostApplication(), handle));
  this->workspace.activate(handle);
  EXPECT_TRUE(this->waitUntil([&] { return this->isInFront(this->desk.identifierOf(one)); }));
}

TYPED_TEST(WorkspaceContract, KnowsWhenAnApplicationHasTerminated) {
  const auto one = this->desk.launch("One");
  const auto handle = *this->workspace.frontmostApplication();
  EXPECT_FALSE(this->workspace.isTerminated(handle));
  this->desk.terminate(one);
  EXPECT_TRUE(this->workspace.isTerminated(handle));
  EXPECT_TRUE(this->waitUntil([&] { return !this->workspace.frontmostApplication(); }));
}

TYPED_TEST(WorkspaceContract, SaysNothingToWhoHasUnsubscribed) {
  this->subscription.reset();
  int heard = 0;
  const auto other = this->workspace.onActivation([&](const RunningApplication&) { ++heard; });
  const auto one = this->desk.launch("One");
  ASSERT_TRUE(this->waitUntil([&] { return heard == 1; }));
  EXPECT_TRUE(this->told.empty());
}

TEST(X11Workspace, TellsDocksApartAndAsksTheWindowManager) {
  X11TargetDesk desk;
  EXPECT_TRUE(desk.x11->isSupported());
  const auto application = desk.launch("Panel");
  EXPECT_FALSE(desk.workspace().frontmostApplication()->isPanel);
  application->tell("become DOCK");
  ASSERT_TRUE(desk.waitUntil([&] { return !application->told("became").empty(); }));
  const auto front = desk.workspace().frontmostApplication();
  EXPECT_TRUE(!front || front->isPanel);
}

TEST(X11Workspace, AProcessThatCannotBeSeenLastsAsLongAsItsWindow) {
  X11TargetDesk desk;
  const auto application = desk.launch("Far");
  auto handle = *desk.workspace().frontmostApplication();
  handle.startTime = 0;
  EXPECT_FALSE(desk.workspace().isTerminated(handle));
  desk.terminate(application);
  EXPECT_TRUE(desk.waitUntil([&] { return desk.workspace().isTerminated(handle); }));

  // The number of the process may have been given to another one since.
  auto reused = handle;
  reused.client.processIdentifier = ::getpid();
  reused.startTime = 1;
  EXPECT_TRUE(desk.workspace().isTerminated(reused));
}
