#include "Delivery/ClipboardTransaction.h"
#include "Delivery/PrivateTranscript.h"
#include "DeliveryHarness.h"

#include <gtest/gtest.h>

namespace murmel::test {

namespace {

class ClipboardTransactionTest : public ::testing::Test {
 protected:
  template <class T>
  T await(Task<T> task) {
    std::optional<T> result;
    desk.start(std::move(task), result);
    desk.executor.runUntilIdle();
    return std::move(result).value();
  }
  ClipboardTransaction open(const std::string& text) {
    return *await(ClipboardTransaction::open(desk.general, SpokenText(text), type));
  }

  const std::string type = ClipboardTransaction::ownershipType("app.murmel.Test");
  DeliveryHarness desk;
};

}  // namespace

TEST(PrivateTranscript, HasTheTextTheConventionsAndTheMarkerInThisOrder) {
  const auto marked = privateTranscript(SpokenText("héllo"), OwnershipMarker{"owner", "ID"});
  ASSERT_EQ(marked.items.size(), 1U);
  const auto& values = marked.items.front().values;
  ASSERT_GE(values.size(), 5U);
  EXPECT_EQ(values[0].type, "UTF8_STRING");
  EXPECT_EQ(values[0].data, "héllo");
  EXPECT_EQ(values[1].type, "org.nspasteboard.TransientType");
  EXPECT_EQ(values[2].type, "org.nspasteboard.ConcealedType");
  EXPECT_EQ(values[3].type, "owner");
  EXPECT_EQ(values[3].data, "ID");
  EXPECT_EQ(marked.find("x-kde-passwordManagerHint")->data, "secret");
  EXPECT_EQ(marked.find("STRING")->data, "h\xE9llo");
  EXPECT_EQ(marked.find("TEXT")->encoding, "UTF8_STRING");

  const auto unmarked = privateTranscript(SpokenText("при"), std::nullopt);
  EXPECT_EQ(unmarked.find("owner"), nullptr);
  EXPECT_EQ(unmarked.find("STRING"), nullptr) << "there is no such letter in Latin-1";
}

TEST_F(ClipboardTransactionTest, WritesMarkedTextAndPutsEverythingBack) {
  auto transaction = open("words");
  EXPECT_EQ(transaction.previous(), richClipboard());
  EXPECT_EQ(desk.clipboardText(), "words");
  EXPECT_EQ(desk.general.contents().find(type)->data, transaction.ownership().marker);
  EXPECT_TRUE(await(transaction.stillOwnsTemporaryContents()));
  EXPECT_TRUE(await(transaction.restorePrevious()));
  EXPECT_EQ(desk.general.contents(), richClipboard());
}

TEST_F(ClipboardTransactionTest, TheSameTextByAnotherIsAChange) {
  auto transaction = open("words");
  desk.general.writeByAnother(desk.general.contents());  // even with our marker in it
  EXPECT_FALSE(await(transaction.stillOwnsTemporaryContents()));
  EXPECT_FALSE(await(transaction.restorePrevious()));
  EXPECT_EQ(desk.clipboardText(), "words");
}

TEST_F(ClipboardTransactionTest, TheSecondTransactionEndsTheFirst) {
  auto first = open("one");
  auto second = open("two");
  EXPECT_NE(first.ownership().marker, second.ownership().marker);
  EXPECT_FALSE(await(first.restorePrevious()));
  EXPECT_TRUE(await(second.stillOwnsTemporaryContents()));
}

TEST_F(ClipboardTransactionTest, AnEmptyClipboardIsEmptyAgain) {
  desk.general.writeByAnother({});
  auto transaction = open("words");
  EXPECT_TRUE(await(transaction.restorePrevious()));
  EXPECT_TRUE(desk.general.contents().items.empty());
}

}  // namespace murmel::test
