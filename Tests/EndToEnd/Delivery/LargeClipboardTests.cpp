// A picture of a large screen in all the forms that its owner makes of it only when it is asked.

#include "DeliveryDesk.h"
#include "Support/BuildPaths.h"
#include "Support/Testing.h"

#include <cstdio>

namespace murmel::test {

TEST(DeliveryBesideABusyOwner, WhatItDeliversLateComesBack) {
  DeliveryDesk desk;
  const auto owner = desk.launch("Owner");
  const auto target = desk.launch("Editor");
  owner->tell("own copied before");
  ASSERT_TRUE(desk.waitUntil([&] { return desk.usersClipboard->hasLost(); }));
  owner->freeze(true);
  desk.service->beginDictationSession();
  desk.loop.runFor(2s);
  owner->freeze(false);
  ASSERT_TRUE(desk.waitUntil([&] { return desk.log.text().contains("clipboard_captured"); }));
  EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::insertionSent);
  ASSERT_TRUE(desk.waitUntilSettled());
  EXPECT_EQ(desk.settled.back(), PasteSettlement::clipboardRestored);
  EXPECT_EQ(DeliveryDesk::clipboardText(), "copied before");
  EXPECT_EQ(target->told("pasted"), Strings{"dictated"});
}

TEST(DeliveryOfALargeClipboard, APictureOfALargeScreenComesBackAndDelaysNoPaste) {
  if (!triesEverything()) GTEST_SKIP() << "MURMEL_MANY_DELIVERIES=1 tries it";
  if (std::system("/usr/bin/python3 -c 'import PyQt5.QtWidgets' 2>/dev/null") != 0)
    GTEST_SKIP() << "PyQt5 is not installed";
  DeliveryDesk desk;
  const auto target = desk.launch("Editor");
  std::optional<ApplicationProcess> owner;
  const auto copyPicture = [&] {
    owner.reset();
    owner.emplace(Strings{"/usr/bin/python3", sourceFolder() + "/Tests/EndToEnd/Delivery/picture.py"});
    ASSERT_TRUE(desk.waitUntil([&] { return !owner->told("owned").empty(); }));
  };
  std::size_t deliveries = 0;
  const auto timeOfDelivery = [&] {
    const auto start = desk.loop.clock.now();
    EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::insertionSent);
    const std::chrono::duration<double, std::milli> time = desk.loop.clock.now() - start;
    const bool kept = desk.service->clipboardWasKept();
    desk.service->endDictationSession();
    EXPECT_TRUE(desk.waitUntilSettled(++deliveries));
    return std::pair(time.count(), kept);
  };
  // The words of a short dictation do not wait for the picture.
  copyPicture();
  desk.service->beginDictationSession();
  desk.loop.runFor(100ms);
  const auto [interrupted, keptInTheMiddle] = timeOfDelivery();
  EXPECT_FALSE(keptInTheMiddle);

  // In turns: whatever else the machine does meets both alike.
  std::vector<double> withText;
  std::vector<double> withPicture;
  Duration captured{};
  for (int pair = 0; pair < 7; ++pair) {
    for (auto* times : {&withText, &withPicture}) {
      if (times == &withPicture) {
        copyPicture();
      } else {
        desk.usersClipboard = std::make_unique<ClipboardOwner>("CLIPBOARD", richClipboard());
      }
      const auto captureStart = desk.loop.clock.now();
      desk.begin();
      captured = desk.loop.clock.now() - captureStart;
      const auto [time, kept] = timeOfDelivery();
      EXPECT_TRUE(kept);
      EXPECT_EQ(desk.settled.back(), PasteSettlement::clipboardRestored);
      times->push_back(time);
    }
  }
  const auto median = [](std::vector<double> times) {
    std::ranges::sort(times);
    return times[times.size() / 2];
  };
  const auto back = DeliveryDesk::contentsOf("CLIPBOARD");
  ASSERT_FALSE(back.items.empty());
  EXPECT_GE(back.items.front().values.size(), 10U);
  EXPECT_TRUE(back.find("image/png") != nullptr && back.find("image/png")->data.starts_with("\x89PNG"));
  std::size_t bytes = 0;
  for (const auto& value : back.items.front().values) bytes += value.data.size();
  std::printf(
      "stop to keys: text %.1f ms, picture %.1f ms, ratio %.2f, picture in the middle of its capture %.1f "
      "ms; "
      "%zu forms, %zu bytes captured in %.1f s\n",
      median(withText), median(withPicture), median(withPicture) / median(withText), interrupted,
      back.items.front().values.size(), bytes, std::chrono::duration<double>(captured).count());
}

}  // namespace murmel::test
