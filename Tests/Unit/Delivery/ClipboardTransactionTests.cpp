#include "Delivery/ClipboardTransaction.h"
#include "Delivery/PrivateTranscript.h"
#include "DeliveryHarness.h"
#include "Support/Testing.h"

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
    return *await(ClipboardTransaction::open(desk.general, SpokenText(text), type, reader, previous));
  }
  /// What the user had copied is captured, as far as it is delivered by now.
  void capture() {
    previous.begin();
    desk.executor.runUntilIdle();
  }

  using Restoration = ClipboardTransaction::Restoration;
  const DesktopClient reader{100, 1'600};
  const std::string type = ClipboardTransaction::ownershipType("app.murmel.Test");
  DeliveryHarness desk;
  PreviousClipboard previous{desk.general, Logger(desk.log, "app.murmel.Test", "text-insertion")};
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

  EXPECT_EQ(privateTranscript(SpokenText("„é“ — wait…"), std::nullopt).find("STRING")->data,
            "\"\xE9\" - wait...");
  const auto unmarked = privateTranscript(SpokenText("при"), std::nullopt);
  EXPECT_EQ(unmarked.find("owner"), nullptr);
  EXPECT_EQ(unmarked.find("STRING"), nullptr) << "there is no such letter in Latin-1";
}

TEST_F(ClipboardTransactionTest, WritesMarkedTextForOneReaderAndPutsEverythingBack) {
  capture();
  auto transaction = open("words");
  EXPECT_EQ(desk.clipboardText(), "words");
  EXPECT_EQ(desk.general.readBy({999, 999}, "UTF8_STRING"), std::nullopt);
  EXPECT_EQ(desk.general.readBy(reader, "UTF8_STRING"), "words");
  EXPECT_EQ(desk.general.contents().find(type)->data, transaction.ownership().marker);
  EXPECT_TRUE(await(transaction.stillOwnsTemporaryContents()));
  EXPECT_TRUE(transaction.previousIsComplete());
  EXPECT_EQ(await(transaction.restorePrevious()), Restoration::restored);
  EXPECT_EQ(desk.general.contents(), richClipboard());
  // The next one needs no capture of what has just been put back.
  auto next = open("more");
  EXPECT_TRUE(next.previousIsComplete());
}

TEST_F(ClipboardTransactionTest, TheSameTextByAnotherIsAChange) {
  capture();
  auto transaction = open("words");
  desk.general.writeByAnother(desk.general.contents());  // even with our marker in it
  EXPECT_FALSE(await(transaction.stillOwnsTemporaryContents()));
  EXPECT_EQ(await(transaction.restorePrevious()), Restoration::notOwned);
  EXPECT_EQ(desk.clipboardText(), "words");
}

TEST_F(ClipboardTransactionTest, WhatIsWrittenAtAnyStepOfTheRestoreStays) {
  for (int step = 0; step < 8; ++step) {
    capture();
    auto transaction = open("words");
    const auto theirs = plainText("theirs " + std::to_string(step));  // other than what would be restored
    std::optional<Restoration> restored;
    desk.start(transaction.restorePrevious(), restored);
    Registration timer;
    std::function<void(int)> write = [&](int left) {
      if (left == 0) return desk.general.writeByAnother(theirs);
      timer = desk.executor.after(0s, [&write, left] { write(left - 1); });
    };
    write(step);
    desk.executor.runUntilIdle();
    EXPECT_EQ(desk.general.contents(), theirs) << step;
  }
}

TEST_F(ClipboardTransactionTest, TheSecondTransactionEndsTheFirst) {
  capture();
  auto first = open("one");
  auto second = open("two");
  EXPECT_NE(first.ownership().marker, second.ownership().marker);
  EXPECT_EQ(await(first.restorePrevious()), Restoration::notOwned);
  EXPECT_TRUE(await(second.stillOwnsTemporaryContents()));
}

TEST_F(ClipboardTransactionTest, WhatIsCopiedWhileTheUserSpeaksIsWhatComesBack) {
  capture();
  desk.general.makeOwnerSlow(2s);  // busy while the next one copies
  desk.general.writeByAnother(plainText("newer"));
  desk.executor.runUntilIdle();
  auto transaction = open("words");
  EXPECT_EQ(await(transaction.restorePrevious()), Restoration::restored);
  EXPECT_EQ(desk.clipboardText(), "newer");
}

TEST_F(ClipboardTransactionTest, WhatIsNotDeliveredInTimeIsNotWaitedForAndNotClaimed) {
  desk.general.makeOwnerSlow(2s);
  capture();
  auto transaction = open("words");
  EXPECT_FALSE(transaction.previousIsComplete());
  EXPECT_EQ(await(transaction.restorePrevious()), Restoration::nothingKept);
  EXPECT_EQ(desk.general.readBy({999, 999}, "UTF8_STRING"), "words") << "for everybody now";
}
