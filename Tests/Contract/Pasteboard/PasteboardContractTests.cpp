#include "PasteboardDesk.h"
#include "Support/Testing.h"

template <class Desk>
class PasteboardContract : public ::testing::Test {
 protected:
  PasteboardContract() {
    reads = pasteboard.onRead([this](const ClipboardRead& read) { seenReads.push_back(read); });
    changes = pasteboard.onForeignChange([this](std::int64_t count) { seenChanges.push_back(count); });
  }
  template <class T>
  T await(Task<T> task) {
    return desk.runner.await(std::move(task));
  }
  bool waitUntil(const std::function<bool()>& condition) { return desk.runner.executor.waitUntil(condition); }

  Desk desk;
  ClipboardPasteboard& pasteboard = desk.pasteboard();
  std::vector<ClipboardRead> seenReads;
  std::vector<std::int64_t> seenChanges;
  Registration reads, changes;
};

using Desks = ::testing::Types<FakeDesk, X11Desk, WaylandDesk, PortalDesk>;
TYPED_TEST_SUITE(PasteboardContract, Desks);

TYPED_TEST(PasteboardContract, CapturesEverythingThatAnotherOffersAndGivesItBack) {
  const auto contents = TypeParam::withForms(tenTypes());
  this->desk.writeByAnother(contents);
  const auto captured = this->await(this->pasteboard.capture());
  EXPECT_TRUE(captured.complete);
  ASSERT_TRUE(TypeParam::withForms(*captured.contents) == contents);

  ASSERT_TRUE(this->await(this->pasteboard.mrmReplace(oneText("words"))));
  EXPECT_EQ(this->desk.readByAnother("UTF8_STRING"), "words");
  EXPECT_EQ(this->desk.readByAnother("text/html"), std::nullopt);
  ASSERT_TRUE(this->await(this->pasteboard.mrmReplace(*captured.contents)));
  for (const auto& value : contents.items.front().values)
    EXPECT_TRUE(this->desk.readByAnother(value.type) == value.data) << value.type;
  EXPECT_TRUE(TypeParam::withForms(*this->await(this->pasteboard.capture()).contents) == contents)
      << "our own contents too";
}

TYPED_TEST(PasteboardContract, AnEmptyClipboardIsCapturedAndRestoredAsEmpty) {
  const auto captured = this->await(this->pasteboard.capture());
  EXPECT_TRUE(captured.complete);
  EXPECT_TRUE(captured.contents->isEmpty());
  ASSERT_TRUE(this->await(this->pasteboard.mrmReplace(oneText("words"))));
  const auto cleared = this->await(this->pasteboard.mrmReplace({}));
  ASSERT_TRUE(cleared);
  EXPECT_EQ(this->desk.readByAnother("UTF8_STRING"), std::nullopt);
  EXPECT_EQ(this->await(this->pasteboard.changeCount()), *cleared) << "clearing is one change, and ours";
  EXPECT_TRUE(this->seenChanges.empty());
}

TYPED_TEST(PasteboardContract, CountsOwnAndForeignChanges) {
  const auto first = this->await(this->pasteboard.mrmReplace(oneText("one")));
  const auto second = this->await(this->pasteboard.mrmReplace(oneText("one")));
  ASSERT_TRUE(first && second);
  EXPECT_EQ(*first + 1, *second);
  EXPECT_EQ(this->await(this->pasteboard.changeCount()), *second);

  this->desk.writeByAnother(oneText("one"));
  const auto third = this->await(this->pasteboard.changeCount());
  EXPECT_NE(third, *second) << "the same text by another is a change";
  ASSERT_TRUE(this->waitUntil([&] { return !this->seenChanges.empty(); }));
  EXPECT_EQ(this->seenChanges, std::vector{third});
}

TYPED_TEST(PasteboardContract, NeverOverwritesWhatAnotherHasWrittenMeanwhile) {
  const auto ours = this->await(this->pasteboard.mrmReplace(oneText("ours")));
  ASSERT_TRUE(ours);
  const auto replaced = this->await(this->pasteboard.mrmReplaceIfUnchanged(shared(oneText("again")), *ours));
  ASSERT_TRUE(replaced) << "nobody has written";
  this->desk.writeByAnother(oneText("theirs"));
  EXPECT_FALSE(this->await(this->pasteboard.mrmReplaceIfUnchanged(shared(oneText("lost")), *replaced)));
  EXPECT_FALSE(this->await(this->pasteboard.mrmReplaceIfUnchanged(shared({}), *replaced)));
  EXPECT_EQ(this->desk.readByAnother("UTF8_STRING"), "theirs");
}

TYPED_TEST(PasteboardContract, GivesSingleFormsOfOwnAndForeignContents) {
  this->desk.writeByAnother(tenTypes());
  EXPECT_EQ(this->await(this->pasteboard.data("text/html")), "<p>h\xC3\xA9llo</p>");
  EXPECT_EQ(this->await(this->pasteboard.data("no/such")), std::nullopt);
  this->await(this->pasteboard.mrmReplace({{{{{"marker", "M", "", 8}}}}}));
  EXPECT_EQ(this->await(this->pasteboard.data("marker")), "M");
  EXPECT_EQ(this->await(this->pasteboard.data("text/html")), std::nullopt);
}

TYPED_TEST(PasteboardContract, TellsWhoReadsWhat) {
  const auto count = this->await(
      this->pasteboard.mrmReplace({{{{{"UTF8_STRING", "words", "", 8}, {"marker", "M", "", 8}}}}}));
  ASSERT_TRUE(count);
  EXPECT_EQ(this->desk.readByAnother("marker"), "M");
  EXPECT_EQ(this->desk.readByAnother("UTF8_STRING"), "words");
  EXPECT_EQ(this->desk.readByAnother("no/such"), std::nullopt);
  ASSERT_TRUE(this->waitUntil([&] { return this->seenReads.size() == 2; }));
  EXPECT_EQ(this->seenReads[0].kind, ClipboardRead::Kind::otherForm);
  EXPECT_EQ(this->seenReads[1].kind, ClipboardRead::Kind::text);
  EXPECT_EQ(this->seenReads[1].changeCount, *count);
  EXPECT_EQ(this->seenReads[1].reader, this->desk.reader());

  this->desk.writeByAnother(oneText("theirs"));
  EXPECT_EQ(this->desk.readByAnother("UTF8_STRING"), "theirs");
  this->await(this->pasteboard.changeCount());
  EXPECT_EQ(this->seenReads.size(), 2U) << "reads of what others wrote are none of ours";
}

TYPED_TEST(PasteboardContract, GivesTheTextToOneProgramAloneUntilEverybodyIsServed) {
  const ClipboardSnapshot contents{{{{{"UTF8_STRING", "words", "", 8}, {"hint", "secret", "", 8}}}}};
  const auto count = this->await(this->pasteboard.mrmReplaceFor({1, 16}, contents));
  ASSERT_TRUE(count);
  EXPECT_EQ(this->desk.readByAnother("UTF8_STRING"), std::nullopt);
  EXPECT_EQ(this->desk.readByAnother("hint"), "secret") << "what says that it is private is for everybody";
  ASSERT_TRUE(this->waitUntil([&] { return this->seenReads.size() == 2; }));
  EXPECT_EQ(this->seenReads[0].kind, ClipboardRead::Kind::refused);
  EXPECT_FALSE(this->await(this->pasteboard.serveEverybody(*count - 1)));
  EXPECT_TRUE(this->await(this->pasteboard.serveEverybody(*count)));
  EXPECT_EQ(this->await(this->pasteboard.changeCount()), *count) << "no news for anybody";
  EXPECT_EQ(this->desk.readByAnother("UTF8_STRING"), "words");

  this->await(this->pasteboard.mrmReplaceFor(this->desk.reader(), contents));
  EXPECT_EQ(this->desk.readByAnother("UTF8_STRING"), "words");
  // On Wayland the compositor tells what there is.
  const bool listsForms = this->desk.readByAnother("TARGETS").has_value();
  EXPECT_EQ(listsForms, TypeParam::asksForForms);
  ASSERT_TRUE(this->waitUntil([&] { return this->seenReads.size() == (listsForms ? 5U : 4U); }));
  EXPECT_EQ(this->seenReads.back().kind == ClipboardRead::Kind::listOfForms, listsForms);
}

TYPED_TEST(PasteboardContract, CarriesOutWhatWasBegunWhenNobodyWaitsAnyMore) {
  { const Awaiting begun(this->pasteboard.mrmReplace(oneText("begun"))); }
  this->await(this->pasteboard.changeCount());
  EXPECT_EQ(this->desk.readByAnother("UTF8_STRING"), "begun");
}

TYPED_TEST(PasteboardContract, HandsNothingOverWhereNobodyTakesIt) {
  const auto handOver = [this] { return this->await(this->pasteboard.handOver()); };
  EXPECT_EQ(handOver(), ClipboardHandOver::notOurs);
  this->await(this->pasteboard.mrmReplace(oneText("words")));
  EXPECT_EQ(handOver(), ClipboardHandOver::failed);
  this->desk.writeByAnother(oneText("theirs"));
  EXPECT_EQ(handOver(), ClipboardHandOver::notOurs);
}
