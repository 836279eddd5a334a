// A picture of a large screen in all the forms that its owner makes of it only when it is asked.

#include "DeliveryDesk.h"
#include "Support/BuildPaths.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>

#include <gtest/gtest.h>

namespace murmel::test {

using namespace std::chrono_literals;

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
  ASSERT_TRUE(desk.waitUntil([&] { return desk.log.lines.contains("clipboard_captured"); }));
  EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::insertionSent);
  ASSERT_TRUE(desk.waitUntilSettled());
  EXPECT_EQ(desk.settled.back(), PasteSettlement::clipboardRestored);
  EXPECT_EQ(DeliveryDesk::clipboardText(), "copied before");
  EXPECT_EQ(target->told("pasted"), std::vector<std::string>{"dictated"});
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
    owner.emplace(
        std::vector<std::string>{"/usr/bin/python3", sourceFolder() + "/Tests/EndToEnd/Delivery/picture.py"});
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

struct Owner {
  const char* name;
  const char* needs;  ///< a command that fails where it is not installed
  std::vector<std::string> command;
};

class DeliveryBesideAnOwner : public ::testing::TestWithParam<Owner> {};

TEST_P(DeliveryBesideAnOwner, ItsPictureComesBackAsItWas) {
  if (!triesEverything()) GTEST_SKIP() << "MURMEL_MANY_DELIVERIES=1 tries it";
  if (std::system((std::string(GetParam().needs) + " >/dev/null 2>&1").c_str()) != 0)
    GTEST_SKIP() << "it is not installed";
  DeliveryDesk desk;
  const ApplicationProcess owner(GetParam().command);
  // It has copied when the clipboard is nobody's that was there before.
  ASSERT_TRUE(desk.loop.waitUntil([&] { return desk.usersClipboard->hasLost(); }, 60s));
  const auto target = desk.launch("Editor");
  // Its forms only: it may write the time into a picture that it makes.
  const auto forms = [] {
    auto types = ClipboardReader("CLIPBOARD").types();
    std::erase_if(types, [](const std::string& type) {
      return std::set<std::string>{"TARGETS", "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS"}.contains(type);
    });
    return std::set<std::string>(types.begin(), types.end());
  };
  const auto before = forms();
  std::optional<ClipboardSnapshot> back;
  for (std::size_t dictation = 1; dictation <= 2; ++dictation) {
    desk.begin();
    EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::insertionSent);
    desk.service->endDictationSession();
    ASSERT_TRUE(desk.waitUntilSettled(dictation));
    EXPECT_EQ(desk.settled.back(), PasteSettlement::clipboardRestored) << desk.log.lines;
    EXPECT_TRUE(desk.service->clipboardWasKept()) << desk.log.lines;
    const auto after = DeliveryDesk::contentsOf("CLIPBOARD");
    ASSERT_FALSE(after.items.empty());
    // GIMP offers icons and makes none of a large picture.
    EXPECT_TRUE(std::ranges::includes(before, forms()));
    EXPECT_GE(forms().size(), 6U);
    EXPECT_TRUE(after.find("image/png") != nullptr && after.find("image/png")->data.starts_with("\x89PNG"));
    // Qt offers a form for pictures of the server's own and leaves it empty.
    for (const auto& value : after.items.front().values)
      EXPECT_TRUE(!value.data.empty() || value.type == "BITMAP") << value.type;
    EXPECT_TRUE(!back || *back == after);
    back = after;
    std::printf("%s: %zu forms\n", GetParam().name, after.items.front().values.size());
  }
  EXPECT_EQ(target->told("pasted"), (std::vector<std::string>{"dictated", "dictated"}));
}

constexpr const char* gimpScript =
    "(let* ((image (car (gimp-image-new 3840 2160 RGB)))"
    " (layer (car (gimp-layer-new image 3840 2160 RGBA-IMAGE \"l\" 100 LAYER-MODE-NORMAL))))"
    " (gimp-image-insert-layer image layer 0 0) (gimp-drawable-fill layer FILL-PATTERN)"
    " (gimp-edit-copy-visible image))";

INSTANTIATE_TEST_SUITE_P(
    Owners, DeliveryBesideAnOwner,
    ::testing::Values(
        Owner{"flameshot",
              "command -v flameshot",
              {"sh", "-c",
               "flameshot & gdbus wait --session org.flameshot.Flameshot; flameshot full -c; wait"}},
        Owner{"gimp", "command -v gimp", {"gimp", "-n", "-s", "-b", gimpScript}},
        Owner{"pyqt5",
              "/usr/bin/python3 -c 'import PyQt5.QtWidgets'",
              {"/usr/bin/python3", sourceFolder() + "/Tests/EndToEnd/Delivery/picture.py"}}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace murmel::test
