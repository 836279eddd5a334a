#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Support/KeyringControl.h"
#include "Support/Testing.h"

// What only the real service can do: freeze, and come back.

namespace {

class SecretServiceTrouble : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!keyringControl::isPresent()) GTEST_SKIP() << "no key ring";
  }
  static constexpr auto* service = "app.murmel.Test.trouble";
  static SecretBytes secret() { return SecretBytes(32); }
};

}  // namespace

TEST_F(SecretServiceTrouble, AFrozenServiceCostsOneWaitAndIsFoundAgain) {
  constexpr auto limit = 400ms;
  constexpr int furtherCalls = 100;
  SecretServiceStore store(limit);
  ASSERT_TRUE(store.add(service, "kept", secret()));
  keyringControl::freeze();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(store.find(service, "kept").error(), secretStatus::serviceUnavailable);
  for (int call = 0; call < furtherCalls; ++call) {
    EXPECT_EQ(store.find(service, "kept").error(), secretStatus::serviceUnavailable);
  }
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited, limit);
  EXPECT_LT(waited, 10 * limit) << "not one wait a call";
  keyringControl::thaw();
  const auto deadline = std::chrono::steady_clock::now() + 10s;
  auto found = store.find(service, "kept");
  while (!found && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::yield();
    found = store.find(service, "kept");
  }
  EXPECT_TRUE(found);
  EXPECT_TRUE(store.remove(service, "kept"));
}

TEST_F(SecretServiceTrouble, AServiceThatDiedAndCameBackIsFoundWithTheNextCall) {
  SecretServiceStore store;
  ASSERT_TRUE(store.add(service, "kept", secret()));
  keyringControl::restart();
  EXPECT_TRUE(store.find(service, "kept"));
  EXPECT_TRUE(store.remove(service, "kept"));
}

TEST_F(SecretServiceTrouble, AServiceThatIsFrozenFromTheStartDoesNotHoldUpTheEnd) {
  constexpr auto limit = 200ms;
  keyringControl::freeze();
  const auto start = std::chrono::steady_clock::now();
  {
    SecretServiceStore store(limit);
    EXPECT_EQ(store.find(service, "kept").error(), secretStatus::serviceUnavailable);
    EXPECT_EQ(store.add(service, "kept", secret()).error(), secretStatus::serviceUnavailable);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, 20 * limit);
  keyringControl::thaw();
}
