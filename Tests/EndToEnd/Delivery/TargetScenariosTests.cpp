#include "DeliveryDesk.h"
#include "Support/ProcessTraces.h"
#include "Support/Testing.h"

const std::string sentence = "Grüße aus dem Diktat";

using Lines = std::vector<std::string>;

TEST(Delivery, TargetsThatReadLateGetTheTextAndNeverTheOldClipboard) {
  for (const auto delay : {10ms, 60ms, 150ms, 400ms, 1'500ms}) {
    SCOPED_TRACE(delay.count());
    DeliveryDesk desk;
    const auto target = desk.launch(
        "Late", {"--read-after", std::to_string(delay.count()), "--reads", delay > 1s ? "1" : "2"});
    desk.begin();
    EXPECT_EQ(desk.deliver(sentence), TextDeliveryResult::insertionSent);
    desk.service->endDictationSession();
    ASSERT_TRUE(desk.waitUntilSettled());
    EXPECT_EQ(desk.settled.front(), PasteSettlement::clipboardRestored);
    ASSERT_TRUE(desk.waitUntil([&] { return !target->told("pasted").empty(); }));
    for (const auto& pasted : target->told("pasted")) EXPECT_NE(pasted, "old clipboard");
    EXPECT_EQ(target->told("pasted").front(), sentence);
    EXPECT_TRUE(DeliveryDesk::contentsOf("CLIPBOARD") == richClipboard());
    EXPECT_EQ(desk.log.text().find("Diktat"), std::string::npos);
  }
}

TEST(Delivery, ATargetThatNeverReadsOrDiesLeavesTheTextOnTheClipboard) {
  for (const auto* option : {"--never", "--die-on-chord"}) {
    SCOPED_TRACE(option);
    DeliveryDesk desk;
    const auto target = desk.launch("Deaf", {option});
    desk.begin();
    EXPECT_EQ(desk.deliver(sentence), TextDeliveryResult::insertionSent);
    EXPECT_EQ(DeliveryDesk::clipboardText(), "(nothing)") << "a clipboard manager has no business with it";
    ASSERT_TRUE(desk.waitUntilSettled());
    EXPECT_EQ(desk.settled.front(), PasteSettlement::neverRead);
    EXPECT_EQ(DeliveryDesk::clipboardText(), sentence);
  }
}

TEST(Delivery, ATargetThatDiesBeforeThePasteIsMissedInTime) {
  DeliveryDesk desk;
  const auto bystander = desk.launch("Bystander");
  const auto target = desk.launch("Target");
  desk.begin();
  desk.service->recordingEnded();
  target->kill();
  ASSERT_TRUE(desk.waitUntil([&] { return desk.isInFront(*bystander); }));
  EXPECT_EQ(desk.deliver(sentence), TextDeliveryResult::copiedFallback);
  EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::noTarget);
  EXPECT_TRUE(bystander->told("press").empty());
  EXPECT_EQ(DeliveryDesk::clipboardText(), sentence);
}

TEST(Delivery, ATargetOnAnotherWorkspaceIsGoneToAndNotDraggedHere) {
  DeliveryDesk desk;
  const auto target = desk.launch("Editor");
  desk.begin();
  const auto window = desk.service->target()->window;
  const auto desktopOf = [&] {
    return "xprop -id " + std::to_string(window) + " _NET_WM_DESKTOP | grep -q '= 0'";
  };
  ASSERT_EQ(std::system("xdotool set_num_desktops 2 set_desktop 1"), 0);
  ASSERT_TRUE(desk.waitUntil([&] { return !desk.isInFront(*target); }));
  EXPECT_EQ(desk.deliver(sentence), TextDeliveryResult::insertionSent);
  EXPECT_EQ(std::system(desktopOf().c_str()), 0);
  EXPECT_EQ(std::system("xprop -root _NET_CURRENT_DESKTOP | grep -q '= 0'"), 0);
  ASSERT_TRUE(desk.waitUntilSettled());
  EXPECT_EQ(target->told("pasted"), Lines{sentence});
}

TEST(Delivery, GoesWhereTheUserHasGoneAndNowhereElse) {
  DeliveryDesk desk;
  const auto first = desk.launch("First");
  desk.begin();
  const auto second = desk.launch("Second");
  EXPECT_EQ(desk.deliver(sentence), TextDeliveryResult::insertionSent);
  ASSERT_TRUE(desk.waitUntilSettled());
  EXPECT_EQ(second->told("pasted"), Lines{sentence});
  EXPECT_TRUE(first->told("press").empty());
}

TEST(Delivery, APasswordPromptGetsNothing) {
  DeliveryDesk desk;
  const auto prompt = desk.launch("Pinentry", {"--grab"});
  ASSERT_TRUE(desk.waitUntil([&] { return !prompt->told("grabbed").empty(); }));
  desk.begin();
  EXPECT_EQ(desk.deliver(sentence), TextDeliveryResult::copiedFallback);
  EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::secureInput);
  EXPECT_TRUE(prompt->told("press").empty());
  EXPECT_EQ(DeliveryDesk::clipboardText(), sentence);
}

TEST(Delivery, ManyDeliveriesLeaveNoDescriptorAndNoThreadBehind) {
  DeliveryDesk desk(DeliveryDesk::selection());
  const auto target = desk.launch("Editor");
  std::vector<std::size_t> descriptors, threads;
  for (int delivery = 1; delivery <= 60; ++delivery) {
    // What the user copies in between is captured anew each time.
    desk.usersClipboard = std::make_unique<ClipboardOwner>("CLIPBOARD", DeliveryDesk::selection());
    desk.begin();
    ASSERT_EQ(desk.deliver(sentence), TextDeliveryResult::insertionSent);
    // On a busy machine the clean-up may have been through by itself.
    desk.loop.await(desk.service->finishPasteCleanup());
    ASSERT_EQ(desk.settled.size(), static_cast<std::size_t>(delivery));
    ASSERT_EQ(desk.settled.back(), PasteSettlement::clipboardRestored);
    desk.service->endDictationSession();
    descriptors.push_back(openDescriptorCount());
    threads.push_back(threadCount());
  }
  EXPECT_EQ(target->told("pasted").size(), 60U);
  EXPECT_EQ(descriptors.back(), descriptors[9]);
  EXPECT_EQ(threads.back(), threads[9]);
}
