#include "MRMUpdatePolicy/ReleaseKey.h"
#include "MRMUpdatePolicy/UpdateFeed.h"
#include "MRMUpdatePolicy/UpdateRoad.h"
#include "MRMUpdatePolicy/UpdateSchedule.h"
#include "Unit/Updates/SignedFeed.h"

namespace {

using Decision = UpdateScheduleDecision;
using Kind = Decision::Kind;

constexpr std::int64_t now = 1'800'000'000;
constexpr std::int64_t day = updateCheckInterval;
constexpr std::int64_t soon = 10 * 60;

TEST(UpdateSchedule, LooksAtMostOnceADayAndOnlyWhereItWasAgreedTo) {
  const struct {
    const char* name;
    UpdateScheduleFacts facts;
    Decision decision;
  } rows[] = {
      {"nobody agreed", {.isAgreed = false, .now = now}, {}},
      {"nobody agreed, and a year has passed", {.lastCheck = now - 365 * day, .now = now}, {}},
      {"never looked before", {.isAgreed = true, .now = now}, {Kind::check}},
      {"a moment ago", {.isAgreed = true, .lastCheck = now, .now = now}, {Kind::wait, soon}},
      {"a day less a minute ago",
       {.isAgreed = true, .lastCheck = now - day + 60, .now = now},
       {Kind::wait, 60}},
      {"a day ago", {.isAgreed = true, .lastCheck = now - day, .now = now}, {Kind::check}},
      {"asleep for a month", {.isAgreed = true, .lastCheck = now - 30 * day, .now = now}, {Kind::check}},
      {"the clock went back", {.isAgreed = true, .lastCheck = now + 1, .now = now}, {Kind::wait, day, true}},
      {"without a network", {.isAgreed = true, .now = now, .isOnline = false}, {Kind::wait, soon}},
      {"on a connection that costs", {.isAgreed = true, .now = now, .isMetered = true}, {Kind::wait, soon}},
      {"in a dictation", {.isAgreed = true, .now = now, .isDictating = true}, {Kind::wait, soon}},
  };
  for (const auto& row : rows) EXPECT_EQ(scheduleUpdateCheck(row.facts), row.decision) << row.name;
}

TEST(UpdateSchedule, InstallsInNobodysWay) {
  EXPECT_TRUE(mayInstallUpdate({}));
  EXPECT_FALSE(mayInstallUpdate({.isDictating = true}));
  EXPECT_TRUE(mayInstallUpdate({.idleSeconds = 1, .isOnBattery = true}));
  EXPECT_FALSE(mayInstallUpdate({.idleSeconds = 299, .waitsForIdle = true}));
  EXPECT_TRUE(mayInstallUpdate({.idleSeconds = 300, .waitsForIdle = true}));
  EXPECT_FALSE(mayInstallUpdate({.idleSeconds = 300, .waitsForIdle = true, .isOnBattery = true}));
}

TEST(UpdateRoad, IsTheOneTheInstallationCameBy) {
  using enum MRMDistributionChannel;
  EXPECT_EQ(updateRoad(direct, "/home/a/.local/opt/murmel/current/bin/murmel", "/home/a"),
            UpdateRoad::direct);
  EXPECT_EQ(updateRoad(direct, "/home/b/.local/opt/murmel/current/bin/murmel", "/home/a"), UpdateRoad::none);
  EXPECT_EQ(updateRoad(direct, "/usr/bin/murmel", "/home/a"), UpdateRoad::systemPackage);
  EXPECT_EQ(updateRoad(direct, "/home/a/murmel/build/ci/bin/murmel", "/home/a"), UpdateRoad::none);
  EXPECT_EQ(updateRoad(appStore, "/home/a/.local/opt/murmel/current/bin/murmel", "/home/a"),
            UpdateRoad::store);
}

class UpdateFeedTest : public testing::Test {
 protected:
  [[nodiscard]] std::expected<UpdateFeed, FeedFault> read(const std::string& feed,
                                                          std::uint64_t seen = 0) const {
    return readUpdateFeed(feed, fingerprint(key_.publicKey()), now, seen);
  }

  ed25519::SigningKey key_ = *ed25519::SigningKey::generate();
  std::string release_ = R"({"version": "2.1", "build": 7, "channel": "developer-id", "edition": "complete",
    "architecture": "x86_64", "size": 10, "sha256": ")" +
                         std::string(64, 'a') + R"(", "url": "https://h/f"})";
  std::string document_ = R"({"serial": 5, "expires": 1800000001, "releases": [)" + release_ + "]}";
};

TEST_F(UpdateFeedTest, IsBelievedWhenEveryByteOfItIsSigned) {
  const auto feed = signedFeed(key_, document_);
  ASSERT_TRUE(read(feed));
  EXPECT_EQ(read(feed)->releases.at(0).build, 7U);
  for (std::size_t index = 0; index < feed.size(); ++index) {
    auto changed = feed;
    changed[index] = static_cast<char>(changed[index] ^ 1);
    EXPECT_FALSE(read(changed)) << "byte " << index;
  }
  EXPECT_EQ(read(feed, 6).error(), FeedFault::rolledBack);
  EXPECT_TRUE(read(feed, 5));
  EXPECT_EQ(readUpdateFeed(feed, fingerprint(key_.publicKey()), now + 1, 0).error(), FeedFault::expired);
  EXPECT_EQ(readUpdateFeed(feed, "", now, 0).error(), FeedFault::wrongKey);
  EXPECT_EQ(read(signedFeed(key_, R"({"serial": -5, "expires": 1800000001, "releases": []})")).error(),
            FeedFault::malformed);
}

TEST_F(UpdateFeedTest, OffersTheNewestReleaseThatSuits) {
  const UpdateSubject subject{6, "developer-id", "complete", "x86_64", "2.36"};
  auto feed = *read(signedFeed(key_, document_));
  EXPECT_EQ(releaseFor(feed, subject)->build, 7U);
  auto newer = feed.releases.front();
  newer.build = 8;
  feed.releases.push_back(newer);
  newer.build = 9;
  newer.minimumSystem = "2.37";
  feed.releases.push_back(newer);
  EXPECT_EQ(releaseFor(feed, subject)->build, 8U);
  auto current = subject;
  current.build = 8;
  EXPECT_FALSE(releaseFor(feed, current));
}

TEST(UpdateFeed, ComparesVersionsByTheirNumbers) {
  EXPECT_TRUE(isAtLeast("2.36", ""));
  EXPECT_TRUE(isAtLeast("2.36", "2.4"));
  EXPECT_TRUE(isAtLeast("2.36", "2.36.0"));
  EXPECT_FALSE(isAtLeast("2.36", "2.36.1"));
  EXPECT_FALSE(isAtLeast("2.36", "3"));
}

}  // namespace
