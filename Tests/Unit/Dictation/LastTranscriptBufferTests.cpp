#include "Dictation/LastTranscriptBuffer.h"
#include "Platform/Fake/ManualExecutor.h"

#include <vector>

#include <gtest/gtest.h>

using namespace murmel;
using namespace std::chrono_literals;

TEST(LastTranscriptBuffer, ForgetsAfterItsRetentionAndEachNewTextHasTheWholeOfIt) {
  ManualExecutor executor;
  LastTranscriptBuffer buffer(executor, 120s);
  std::vector<bool> announced;
  buffer.onAvailabilityChange([&](bool available) { announced.push_back(available); });

  buffer.replace(SpokenText("first"));
  executor.advance(119s);
  ASSERT_TRUE(buffer.text());
  buffer.replace(SpokenText("second"));
  executor.advance(119s);
  ASSERT_TRUE(buffer.text()) << "the first text's time must not clear the second";
  EXPECT_EQ(buffer.text()->reveal(), "second");
  executor.advance(1s);
  EXPECT_FALSE(buffer.text());
  EXPECT_EQ(announced, (std::vector{false, true, false, true, false}));
  EXPECT_EQ(executor.pendingTimers(), 0U);
}

TEST(LastTranscriptBuffer, ClearingTakesTheTextAndItsTimer) {
  ManualExecutor executor;
  LastTranscriptBuffer buffer(executor, 120s);
  buffer.replace(SpokenText("words"));
  buffer.clear();
  EXPECT_FALSE(buffer.text());
  EXPECT_EQ(executor.pendingTimers(), 0U);
}
