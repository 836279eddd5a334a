#include "DeliveryHarness.h"
#include "Support/Testing.h"

namespace {

bool insert(DeliveryHarness& desk, const std::string& phrase) {
  std::optional<bool> result;
  desk.start(desk.service->insertLiveSegment(SpokenText(phrase)), result);
  for (int step = 0; step < 1'000 && !result; ++step) desk.executor.advance(10ms);
  return result.value();
}

}  // namespace

TEST(LiveSegment, PhrasesArriveInOrderAndTheClipboardIsTheUsersInBetween) {
  DeliveryHarness desk;
  desk.readAfter(120ms);
  desk.service->beginDictationSession();
  for (const auto* phrase : {"hello", " world", " again"}) EXPECT_TRUE(insert(desk, phrase));
  EXPECT_EQ(desk.read, (std::vector<std::string>{"hello", " world", " again"}));
  EXPECT_EQ(desk.service->lastResult(), TextDeliveryResult::insertionSent);
  desk.executor.advance(1s);
  EXPECT_EQ(desk.general.contents(), richClipboard());
  EXPECT_EQ(desk.service->lastResult(), TextDeliveryResult::insertedAndClipboardRestored);
  EXPECT_NE(desk.log.text().find("paste_dispatched=true"), std::string::npos);
}

TEST(LiveSegment, ASwitchOfApplicationOrWindowEndsItAndIsNotUndone) {
  for (const auto& [reported, sameProgram] : {std::pair{false, false}, {true, false}, {true, true}}) {
    DeliveryHarness desk;
    desk.readAfter(5ms);
    desk.service->beginDictationSession();
    ASSERT_TRUE(insert(desk, "hello"));
    desk.executor.advance(1s);
    auto other = application(200, "Chat");
    if (sameProgram) other = desk.editor;
    other.window = 77;
    desk.workspace.bringToFront(other);
    if (reported) desk.executor.advance(1s);
    EXPECT_FALSE(insert(desk, " world"));
    EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::appChanged);
    EXPECT_EQ(desk.keyboard.posted().size(), 1U);
    EXPECT_TRUE(desk.workspace.activated().empty());
    EXPECT_EQ(desk.general.contents(), richClipboard()) << "the rest is copied at the end, not now";
    EXPECT_NE(desk.log.text().find("paste_dispatched=false"), std::string::npos);
  }
}

TEST(LiveSegment, APhraseThatIsNotReadCountsAsNotInserted) {
  DeliveryHarness desk;
  desk.service->beginDictationSession();
  EXPECT_FALSE(insert(desk, "hello"));
  EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::unknown);
  EXPECT_EQ(desk.clipboardText(), "hello");
}

TEST(LiveSegment, APhraseRefusedAtTheLastMomentLeavesTheClipboardAsItWas) {
  DeliveryHarness desk;
  desk.service->beginDictationSession();
  desk.keyboard.beforePost([&] { desk.workspace.bringToFront(application(ownProcess, "Murmel")); });
  EXPECT_FALSE(insert(desk, "hello"));
  EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::targetNotActive);
  EXPECT_EQ(desk.general.contents(), richClipboard());
}
