#include "DeliveryDesk.h"

#include <gtest/gtest.h>

namespace murmel::test {

namespace {

/// A dialogue with one field, by a toolkit that tells of its fields.
std::vector<std::string> dialogue(const std::string& kind) {
  return {"env", "-u", "NO_AT_BRIDGE", "zenity", kind, "--title=dialogue"};
}

bool isInFront(DeliveryDesk& desk, const ApplicationProcess& application) {
  const auto front = desk.workspace().frontmostApplication();
  return front && front->client.processIdentifier == application.identifier();
}

}  // namespace

TEST(DeliveryToFields, APasswordFieldGetsNothingAndAnotherFieldDoes) {
  DeliveryDesk desk;
  const std::string spoken = "dictated";
  // The first application of the desktop that tells of its fields starts the bus on which it does so.
  const ApplicationProcess first(dialogue("--entry"));
  ASSERT_TRUE(desk.waitUntil([&] { return isInFront(desk, first) && desk.field.connect(); }));

  const ApplicationProcess password(dialogue("--password"));
  ASSERT_TRUE(desk.waitUntil([&] { return isInFront(desk, password) && desk.field.knowsFocus(); }));
  const auto hides = [&] {
    return desk.loop.await(desk.field.hidesText(*desk.workspace().frontmostApplication()));
  };
  ASSERT_TRUE(desk.waitUntil(hides));
  desk.begin();
  EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::copiedFallback);
  EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::secureInput);

  const ApplicationProcess entry(dialogue("--entry"));
  ASSERT_TRUE(desk.waitUntil([&] { return isInFront(desk, entry) && !hides(); }));
  desk.begin();
  EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::insertionSent);
  ASSERT_TRUE(desk.waitUntilSettled());
  EXPECT_EQ(desk.settled.front(), PasteSettlement::clipboardRestored);
}

}  // namespace murmel::test
