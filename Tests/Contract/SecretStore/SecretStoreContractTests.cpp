#include "Platform/Fake/FakeSecretStore.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Support/KeyringControl.h"
#include "Support/Testing.h"

namespace {

class FakeKeyring {
 public:
  FakeSecretStore store;
  void lock() { store.setLocked(true); }
  void unlock() { store.setLocked(false); }
  void refuseToUnlock() { store.setUserRefusesUnlock(true); }
};

class RealKeyring {
 public:
  SecretServiceStore store;
  void lock() { keyringControl::lock(); }
  void unlock() { keyringControl::unlock(); }
  /// Nobody sits in front of the private session: whatever asks is refused.
  void refuseToUnlock() {}
};

template <class Keyring>
class SecretStoreContract : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::is_same_v<Keyring, RealKeyring> && !keyringControl::isPresent()) GTEST_SKIP() << "no key ring";
  }

  Keyring keyring;
  SecretStore& store = keyring.store;
  // The real store keeps what earlier tests put there.
  const std::string service =
      std::string("app.murmel.Test.") + ::testing::UnitTest::GetInstance()->current_test_info()->name();

  static SecretBytes secret(std::uint8_t first) {
    SecretBytes bytes(32);
    for (std::size_t index = 0; index < bytes.size(); ++index) {
      bytes.reveal()[index] =
          static_cast<std::uint8_t>(first + index * 37);  // zeros and bytes that are no text
    }
    return bytes;
  }
};

using Keyrings = ::testing::Types<FakeKeyring, RealKeyring>;
TYPED_TEST_SUITE(SecretStoreContract, Keyrings);

}  // namespace

TYPED_TEST(SecretStoreContract, KeepsBytesUnderServiceAndAccount) {
  const auto one = this->secret(0);
  const auto two = this->secret(7);
  ASSERT_TRUE(this->store.add(this->service, "one", one));
  ASSERT_TRUE(this->store.add(this->service, "two", two));
  ASSERT_TRUE(this->store.add(this->service + ".other", "one", two));
  EXPECT_EQ(*this->store.find(this->service, "one"), one);
  EXPECT_EQ(*this->store.find(this->service, "two"), two);
  EXPECT_EQ(*this->store.find(this->service + ".other", "one"), two);
  ASSERT_TRUE(this->store.remove(this->service, "one"));
  EXPECT_EQ(this->store.find(this->service, "one").error(), secretStatus::itemNotFound);
  EXPECT_EQ(*this->store.find(this->service, "two"), two);
  EXPECT_EQ(*this->store.find(this->service + ".other", "one"), two);
}

TYPED_TEST(SecretStoreContract, SaysWhatIsNotThereOrThereAlready) {
  EXPECT_EQ(this->store.find(this->service, "absent").error(), secretStatus::itemNotFound);
  EXPECT_EQ(this->store.remove(this->service, "absent").error(), secretStatus::itemNotFound);
  ASSERT_TRUE(this->store.add(this->service, "present", this->secret(1)));
  EXPECT_EQ(this->store.add(this->service, "present", this->secret(2)).error(), secretStatus::duplicateItem);
  EXPECT_EQ(*this->store.find(this->service, "present"), this->secret(1));
  EXPECT_EQ(this->store.find(this->service, "").error(), secretStatus::invalidParameter);
  EXPECT_EQ(this->store.add("", "x", this->secret(1)).error(), secretStatus::invalidParameter);
}

TYPED_TEST(SecretStoreContract, ALockedStoreAnswersWithoutAsking) {
  ASSERT_TRUE(this->store.add(this->service, "kept", this->secret(3)));
  this->keyring.lock();
  EXPECT_EQ(this->store.find(this->service, "kept").error(), secretStatus::interactionNotAllowed);
  EXPECT_EQ(this->store.find(this->service, "absent").error(), secretStatus::interactionNotAllowed);
  EXPECT_EQ(this->store.add(this->service, "new", this->secret(4)).error(),
            secretStatus::interactionNotAllowed);
  EXPECT_EQ(this->store.remove(this->service, "kept").error(), secretStatus::interactionNotAllowed);
  this->keyring.unlock();
  EXPECT_EQ(*this->store.find(this->service, "kept"), this->secret(3));
  EXPECT_EQ(this->store.find(this->service, "new").error(), secretStatus::itemNotFound);
}

TYPED_TEST(SecretStoreContract, AnUnlockThatTheUserRefusesChangesNothing) {
  EXPECT_TRUE(this->store.unlock()) << "it is open";
  ASSERT_TRUE(this->store.add(this->service, "kept", this->secret(5)));
  this->keyring.lock();
  this->keyring.refuseToUnlock();
  EXPECT_EQ(this->store.unlock().error(), secretStatus::userCanceled);
  EXPECT_EQ(this->store.find(this->service, "kept").error(), secretStatus::interactionNotAllowed);
  this->keyring.unlock();
  EXPECT_EQ(*this->store.find(this->service, "kept"), this->secret(5));
}
