#include "Delivery/InsertionFocusPolicy.h"
#include "DeliveryHarness.h"
#include "Support/Awaiting.h"
#include "Support/Testing.h"

const std::string spoken = "dictated words";

// MARK: the checks before a paste

TEST(PasteChecks, TheFirstFailureNamesTheReason) {
  using Block = LiveInsertionBlock;
  PasteObservations seen;
  seen.targetTerminated = seen.userActivatedAnother = seen.secureInput = true;
  EXPECT_EQ(firstPasteBlock(seen), Block::noTarget);
  for (const auto& [what, value, block] :
       {std::tuple(&PasteObservations::hasTarget, true, Block::noTarget),
        {&PasteObservations::targetTerminated, false, Block::appChanged},
        {&PasteObservations::userActivatedAnother, false, Block::targetNotActive},
        {&PasteObservations::targetInFront, true, Block::secureInput},
        {&PasteObservations::secureInput, false, Block::noPermission},
        {&PasteObservations::mayPost, true, Block::eventsUnavailable}}) {
    seen.*what = value;
    EXPECT_EQ(firstPasteBlock(seen), block);
  }
  seen.eventsAvailable = true;
  EXPECT_EQ(firstPasteBlock(seen), std::nullopt);
}

TEST(TextInsertionService, CopiesWhereItMayNotPaste) {
  struct Row {
    const char* name;
    LiveInsertionBlock block;
    void (*beforeSession)(DeliveryHarness&);
    void (*duringSession)(DeliveryHarness&);
  };
  const auto nothing = [](DeliveryHarness&) {};
  const Row rows[] = {
      {"this application was in front", LiveInsertionBlock::noTarget,
       [](DeliveryHarness& desk) { desk.workspace.bringToFront(application(ownProcess, "Murmel")); },
       nothing},
      {"nothing was in front", LiveInsertionBlock::noTarget,
       [](DeliveryHarness& desk) { desk.workspace.bringToFront(std::nullopt); }, nothing},
      {"a panel was in front", LiveInsertionBlock::noTarget,
       [](DeliveryHarness& desk) {
         auto panel = application(7, "Xfce4-panel");
         panel.isPanel = true;
         desk.workspace.bringToFront(panel);
       },
       nothing},
      {"the target has terminated", LiveInsertionBlock::noTarget, nothing,
       [](DeliveryHarness& desk) { desk.workspace.terminate(desk.editor); }},
      {"this application is in front and stays there", LiveInsertionBlock::targetNotActive, nothing,
       [](DeliveryHarness& desk) {
         desk.workspace.setActivationTime(std::nullopt);
         desk.workspace.bringToFront(application(ownProcess, "Murmel"));
       }},
      {"the focus is in a password field", LiveInsertionBlock::secureInput, nothing,
       [](DeliveryHarness& desk) { desk.field.setKind(FocusedFieldKind::hidden); }},
      {"the application does not say whether it is in one", LiveInsertionBlock::secureInput, nothing,
       [](DeliveryHarness& desk) { desk.field.setKind(FocusedFieldKind::unanswered); }},
      {"a password is being typed", LiveInsertionBlock::secureInput, nothing,
       [](DeliveryHarness& desk) { desk.secureInput.setEnabled(true); }},
      {"keys may not be posted", LiveInsertionBlock::noPermission, nothing,
       [](DeliveryHarness& desk) { desk.keyboard.forbid(); }},
      {"the keyboard has no key that pastes", LiveInsertionBlock::eventsUnavailable, nothing,
       [](DeliveryHarness& desk) { desk.keyboard.setChords({}); }},
      {"a password prompt opens at the last moment", LiveInsertionBlock::secureInput, nothing,
       [](DeliveryHarness& desk) {
         desk.keyboard.holdModifierFor(300ms);
         auto open = [&desk] { desk.secureInput.setEnabled(true); };
         static Registration timer;
         timer = desk.executor.after(100ms, open);
       }},
      {"another window comes up while the keys are sent", LiveInsertionBlock::appChanged, nothing,
       [](DeliveryHarness& desk) {
         desk.keyboard.beforePost([&desk] { desk.workspace.bringToFront(application(200, "Chat")); });
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    DeliveryHarness desk;
    row.beforeSession(desk);
    desk.service->beginDictationSession();
    row.duringSession(desk);
    EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::copiedFallback);
    EXPECT_EQ(desk.service->lastBlock(), row.block);
    EXPECT_TRUE(desk.keyboard.posted().empty());
    EXPECT_EQ(desk.clipboardText(), spoken);
    EXPECT_EQ(desk.general.contents().find("app.murmel.Test.temporary-transcript-owner"), nullptr);
    EXPECT_NE(desk.general.contents().find("org.nspasteboard.ConcealedType"), nullptr);
    desk.executor.advance(5s);
    EXPECT_EQ(desk.clipboardText(), spoken) << "what was copied stays";
    EXPECT_EQ(desk.log.text().find("dictated"), std::string::npos);
  }
}

// MARK: which application the text goes to

TEST(TextInsertionService, FollowsTheUserButNotPanelsOrItself) {
  DeliveryHarness desk;
  desk.service->beginDictationSession();
  const auto show = [&](const RunningApplication& shown) {
    desk.workspace.bringToFront(shown);
    desk.executor.advance(100ms);
  };
  show(application(ownProcess, "Murmel"));
  EXPECT_EQ(desk.service->target()->bundleIdentifier, "Mousepad");
  auto dock = application(7, "Plank");
  dock.isPanel = true;
  show(dock);
  EXPECT_EQ(desk.service->target()->bundleIdentifier, "Mousepad");
  show(application(8, "com.apple.controlcenter"));
  EXPECT_EQ(desk.service->target()->bundleIdentifier, "Mousepad");
  const auto chat = application(200, "Chat");
  show(chat);
  EXPECT_EQ(desk.service->target()->bundleIdentifier, "Chat");
  desk.service->endDictationSession();
  EXPECT_FALSE(desk.service->target());
}

TEST(TextInsertionService, FollowsASwitchThatTheDesktopHasNotReportedYet) {
  DeliveryHarness desk;
  desk.service->beginDictationSession();
  const auto chat = application(200, "Chat");
  desk.workspace.bringToFront(chat);
  EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::insertionSent);
  EXPECT_TRUE(desk.workspace.activated().empty()) << "the user is not pulled back";
}

TEST(TextInsertionService, NeverPastesIntoTheWindowBehindOneThatHasGone) {
  for (const bool wholeProcess : {false, true}) {
    DeliveryHarness desk;
    auto behind = wholeProcess ? application(200, "Chat") : desk.editor;
    behind.window = 5;
    desk.service->beginDictationSession();
    desk.service->recordingEnded();
    wholeProcess ? desk.workspace.terminate(desk.editor) : desk.workspace.closeWindow(desk.editor);
    desk.workspace.bringToFront(behind);
    desk.executor.advance(1s);
    EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::copiedFallback);
    EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::noTarget);
    EXPECT_TRUE(desk.keyboard.posted().empty());
    EXPECT_EQ(desk.clipboardText(), spoken);
  }
}

TEST(TextInsertionService, AShortcutThatIsHeldAloneOpensNoMenu) {
  DeliveryHarness desk;
  desk.keyboard.holdModifierFor(1s);
  desk.service->beginDictationSession();
  EXPECT_EQ(desk.keyboard.masked(), 1);
  auto terminal = desk.editor;
  terminal.bundleIdentifier = "Zutty";  // it would hand the key to its program
  desk.workspace.bringToFront(terminal);
  desk.service->beginDictationSession();
  EXPECT_EQ(desk.keyboard.masked(), 1);
  desk.executor.runUntilIdle();  // a clipboard that is still asked would keep itself
}

TEST(TextInsertionService, BringsTheTargetBackWithinItsPolls) {
  struct Row {
    std::optional<Duration> arrival;
    TextDeliveryResult result;
  };
  for (const auto& row :
       {Row{0ms, TextDeliveryResult::insertionSent}, Row{1'400ms, TextDeliveryResult::insertionSent},
        Row{1'600ms, TextDeliveryResult::copiedFallback}}) {
    DeliveryHarness desk;
    desk.service->beginDictationSession();
    desk.workspace.bringToFront(application(ownProcess, "Murmel"));
    desk.workspace.setActivationTime(row.arrival);
    EXPECT_EQ(desk.deliver(spoken), row.result);
    EXPECT_EQ(desk.workspace.activated().size(), 1U);
  }
}

TEST(TextInsertionService, PastesOnlyAfterHeldModifiersAreReleased) {
  for (const bool pressesAnew : {false, true}) {
    DeliveryHarness desk;
    desk.service->beginDictationSession();
    if (!pressesAnew) desk.keyboard.holdModifierFor(10s);
    // While the target is waited for: its shortcut has come half way.
    const auto press = [&] { desk.keyboard.holdModifierFor(100ms); };
    const auto timer = pressesAnew ? desk.executor.after(5ms, press) : Registration();
    const auto started = desk.executor.now();
    std::optional<Instant> posted;
    desk.keyboard.onPosted([&](PasteChord) { posted = desk.executor.now(); });
    EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::insertionSent);
    EXPECT_EQ(*posted - started, PasteReadiness::patience + (pressesAnew ? 100ms : 400ms));
  }
}

// MARK: receipts and the clipboard afterwards

TEST(TextInsertionService, KeepsTheTranscriptWhenTheTargetNeverReadsIt) {
  DeliveryHarness desk;
  desk.keyboard.onPosted([&](PasteChord) {
    EXPECT_FALSE(desk.general.readBy({999, 999}, "UTF8_STRING")) << "a clipboard manager";
    desk.general.readBy(desk.editor.client, "numbers");  // not there
    desk.general.readBy(desk.editor.client, "x-kde-passwordManagerHint");
  });
  desk.service->beginDictationSession();
  EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::insertionSent);
  desk.executor.advance(1'900ms);
  EXPECT_TRUE(desk.settled.empty());
  desk.executor.advance(200ms);
  EXPECT_EQ(desk.settled, std::vector{PasteSettlement::neverRead});
  EXPECT_EQ(desk.clipboardText(), spoken);
  EXPECT_EQ(desk.general.readBy({999, 999}, "UTF8_STRING"), spoken) << "for a paste by hand";
  EXPECT_TRUE(warning(desk.settled.front()));
  EXPECT_NE(desk.log.text().find("paste_settled how=never_read reads=0 refused_readers=1"), std::string::npos)
      << desk.log.text();
  EXPECT_FALSE(warning(PasteSettlement::clipboardRestored));
}

TEST(TextInsertionService, LeavesAloneWhatSomebodyElseWrites) {
  for (const bool afterTheRead : {false, true}) {
    DeliveryHarness desk;
    desk.readAfter(afterTheRead ? 10ms : 500ms);
    desk.service->beginDictationSession();
    desk.deliver(spoken);
    desk.executor.advance(50ms);
    desk.general.writeByAnother(plainText(spoken));  // the very same words are a change too
    desk.executor.advance(3s);
    EXPECT_EQ(desk.general.contents(), plainText(spoken));
    EXPECT_EQ(desk.settled, std::vector{afterTheRead ? PasteSettlement::clipboardChanged
                                                     : PasteSettlement::replacedUnread});
  }
}

TEST(TextInsertionService, SeesAChangeThatComesWithThePaste) {
  DeliveryHarness desk;
  desk.keyboard.onPosted([&](PasteChord) { desk.general.writeByAnother(plainText("copied")); });
  desk.service->beginDictationSession();
  EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::insertionSentClipboardChanged);
  desk.executor.advance(3s);
  EXPECT_EQ(desk.clipboardText(), "copied");
  EXPECT_EQ(desk.settled, std::vector{PasteSettlement::replacedUnread});
  EXPECT_TRUE(warning(desk.settled.front())) << "the words are nowhere";
}

TEST(TextInsertionService, AReadBeforeTheKeysIsNotThePaste) {
  // It reads every new clipboard at once, and pastes what it reads 700 ms after the keys.
  DeliveryHarness desk;
  desk.readAfter(700ms);
  desk.service->beginDictationSession();
  std::optional<TextDeliveryResult> result;
  desk.start(desk.service->insertOrCopy(SpokenText(spoken), false), result);
  while (desk.clipboardText() != spoken) desk.executor.advance(1ms);
  ASSERT_TRUE(desk.keyboard.posted().empty());
  desk.general.readBy(desk.editor.client, "TARGETS");
  desk.executor.advance(5ms);
  desk.general.readBy(desk.editor.client, "UTF8_STRING");
  desk.executor.advance(7ms);
  EXPECT_TRUE(desk.keyboard.posted().empty()) << "it may go on asking";
  desk.executor.advance(1ms);
  EXPECT_EQ(desk.keyboard.posted().size(), 1U) << "sooner than for one that asks for nothing";
  desk.executor.advance(2s);
  EXPECT_EQ(desk.read, std::vector{spoken});
  EXPECT_EQ(desk.general.contents(), richClipboard());
}

TEST(TextInsertionService, AReadWhereNoFieldHasTheKeyboardIsNoSuccess) {
  DeliveryHarness desk;
  desk.field.setKind(FocusedFieldKind::none);
  desk.readAfter(10ms);
  desk.service->beginDictationSession();
  EXPECT_GE(desk.field.prepared(), 1);
  desk.deliver(spoken);
  desk.executor.advance(3s);
  EXPECT_EQ(desk.settled, std::vector{PasteSettlement::noField});
  EXPECT_TRUE(warning(desk.settled.front()));
  EXPECT_EQ(desk.clipboardText(), spoken);
}

TEST(TextInsertionService, ThereIsAWayBackToWhatATextForAPasteByHandHasReplaced) {
  struct Row {
    const char* name;
    bool isRead, isRefused;
    void (*meanwhile)(DeliveryHarness&);
    bool isOpen;
  };
  const auto nothing = [](DeliveryHarness&) {};
  const Row rows[] = {
      {"copied instead of pasted", false, true, nothing, true},
      {"pasted and not read", false, false, nothing, true},
      {"pasted and read", true, false, nothing, false},
      {"two minutes later", false, true, [](DeliveryHarness& desk) { desk.executor.advance(2min); }, false},
      {"something else was copied", false, true,
       [](DeliveryHarness& desk) { desk.general.writeByAnother(plainText("newer")); }, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    DeliveryHarness desk;
    desk.secureInput.setEnabled(row.isRefused);
    if (row.isRead) desk.readAfter(5ms);
    desk.service->beginDictationSession();
    desk.deliver(spoken);
    desk.service->endDictationSession();
    desk.executor.advance(3s);
    row.meanwhile(desk);
    desk.executor.runUntilIdle();
    EXPECT_EQ(desk.service->canBringBackClipboard(), row.isOpen);
    if (!row.isOpen) continue;
    for (const bool isTaken : {false, true}) {
      desk.general.refuseReplacing(!isTaken);
      desk.service->bringBackClipboard();
      desk.executor.runUntilIdle();
      EXPECT_EQ(desk.clipboardText(), isTaken ? "old" : spoken);
      EXPECT_EQ(desk.service->canBringBackClipboard(), !isTaken);
    }
    EXPECT_EQ(desk.general.contents(), richClipboard());
  }
}

TEST(TextInsertionService, KeepsTheTranscriptByTheUsersChoiceAndStillWatchesItArrive) {
  for (const bool reads : {true, false}) {
    DeliveryHarness desk(/*restoresClipboard=*/false);
    if (reads) desk.readAfter(30ms);
    desk.service->beginDictationSession();
    EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::insertedAndTranscriptKept);
    desk.executor.advance(3s);
    EXPECT_EQ(desk.clipboardText(), spoken);
    EXPECT_EQ(desk.settled,
              std::vector{reads ? PasteSettlement::transcriptKept : PasteSettlement::neverRead});
  }
}

TEST(TextInsertionService, TheNextDeliveryWaitsForTheReadOfTheOneBefore) {
  DeliveryHarness desk;
  desk.readAfter(600ms);
  desk.service->beginDictationSession();
  desk.deliver("one");
  EXPECT_EQ(desk.deliver("two"), TextDeliveryResult::insertionSent);
  desk.executor.advance(3s);
  EXPECT_EQ(desk.read, (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(desk.general.contents(), richClipboard());
}

TEST(TextInsertionService, TwoDeliveriesAtOnceDoNotTakeEachOthersPlace) {
  DeliveryHarness desk;
  desk.readAfter(30ms);
  desk.service->beginDictationSession();
  const Awaiting one(desk.service->insertOrCopy(SpokenText("one"), false));
  const Awaiting two(desk.service->insertOrCopy(SpokenText("two"), false));
  desk.executor.advance(5s);
  EXPECT_EQ(desk.read, (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(desk.general.contents(), richClipboard());
}

TEST(TextInsertionService, FinishRestoresAtOnceWhenTheTargetHasRead) {
  DeliveryHarness desk;
  desk.readAfter(10ms);
  desk.service->beginDictationSession();
  desk.deliver(spoken);
  desk.executor.advance(40ms);
  std::optional<std::optional<TextDeliveryResult>> finished;
  desk.start(desk.service->finishPasteCleanup(), finished);
  desk.executor.runUntilIdle();
  ASSERT_TRUE(finished);
  EXPECT_EQ(*finished, TextDeliveryResult::insertedAndClipboardRestored);
  EXPECT_EQ(desk.general.contents(), richClipboard());

  finished.reset();
  desk.start(desk.service->finishPasteCleanup(), finished);
  desk.executor.runUntilIdle();
  ASSERT_TRUE(finished);
  EXPECT_EQ(*finished, std::nullopt) << "nothing is pending any more";
}

TEST(TextInsertionService, ATranscriptThatNeverArrivedSurvivesTheNextDelivery) {
  DeliveryHarness desk;
  desk.service->beginDictationSession();
  desk.deliver("lost one");
  desk.executor.advance(3s);
  desk.readAfter(10ms);
  desk.deliver("next");
  desk.executor.advance(3s);
  EXPECT_EQ(desk.read, std::vector<std::string>{"next"});
  EXPECT_EQ(desk.clipboardText(), "lost one") << "the user was told that it is on the clipboard";
}

TEST(TextInsertionService, TerminalsGetTheTextOnBothSelectionsAndGiveBothBack) {
  DeliveryHarness desk;
  desk.editor.bundleIdentifier = "XTerm";
  desk.workspace.bringToFront(desk.editor);
  desk.readAfter(10ms, &desk.primary);
  desk.service->beginDictationSession();
  desk.deliver(spoken);
  desk.executor.advance(2s);
  EXPECT_EQ(desk.keyboard.posted(), std::vector{PasteChord::shiftInsert});
  EXPECT_EQ(desk.read, std::vector{spoken});
  EXPECT_EQ(desk.general.contents(), richClipboard());
  EXPECT_EQ(desk.primary.contents(), plainText("selected"));
  // Nor does it stay there when nobody takes it.
  desk.keyboard.onPosted({});
  desk.deliver(spoken);
  desk.executor.advance(3s);
  EXPECT_EQ(desk.settled.back(), PasteSettlement::neverRead);
  EXPECT_EQ(desk.primary.contents(), plainText("selected"));
}

TEST(TextInsertionService, FallsBackToInsertOnAKeyboardWithoutV) {
  DeliveryHarness desk;
  desk.keyboard.setChords({PasteChord::shiftInsert});
  desk.service->beginDictationSession();
  EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::insertionSent);
  EXPECT_EQ(desk.keyboard.posted(), std::vector{PasteChord::shiftInsert});
}

TEST(TextInsertionService, CarriesOnWhenItsCallerIsGone) {
  DeliveryHarness desk;
  desk.readAfter(10ms);
  desk.service->beginDictationSession();
  std::optional<TextDeliveryResult> result;
  desk.start(desk.service->insertOrCopy(SpokenText(spoken), false), result);
  desk.scope.cancelAll();
  desk.executor.advance(3s);
  EXPECT_EQ(desk.read, std::vector{spoken});
  EXPECT_EQ(desk.general.contents(), richClipboard());
}

TEST(TextInsertionService, TheWordsDoNotWaitForASlowClipboardAndItsLossIsTold) {
  for (const bool longEnough : {false, true}) {
    DeliveryHarness desk;
    desk.general.makeOwnerSlow(2'500ms);
    desk.readAfter(10ms);
    desk.service->beginDictationSession();
    if (longEnough) desk.executor.advance(3s);
    const auto start = desk.executor.now();
    EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::insertionSent);
    EXPECT_LT(desk.executor.now() - start, 100ms);
    desk.executor.advance(2s);
    EXPECT_EQ(desk.read, std::vector{spoken});
    EXPECT_EQ(desk.service->clipboardWasKept(), longEnough);
    EXPECT_EQ(desk.settled,
              std::vector{longEnough ? PasteSettlement::clipboardRestored : PasteSettlement::transcriptKept});
  }
}

TEST(TextInsertionService, AClipboardThatCannotBeTakenIsNotCalledASuccess) {
  DeliveryHarness desk;
  desk.general.refuseReplacing();
  desk.service->beginDictationSession();
  EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::copiedFallback);
  EXPECT_TRUE(desk.keyboard.posted().empty());
  EXPECT_EQ(desk.general.contents(), richClipboard());
  EXPECT_FALSE(desk.service->lastCopySucceeded());
  for (const auto& [takes, stands] : {std::pair(0s, true), {1s, true}, {5s, false}}) {
    DeliveryHarness slow;
    slow.general.makeReplacingSlow(takes);
    Awaiting copying(slow.service->writePrivateText(SpokenText(spoken)));
    slow.executor.advance(1500ms);
    ASSERT_TRUE(copying.done()) << "nobody waits for longer";
    EXPECT_EQ(*copying, stands);
    EXPECT_EQ(slow.clipboardText(), stands ? spoken : "old");
    slow.executor.advance(5s);
    EXPECT_EQ(slow.clipboardText(), spoken);
  }
  EXPECT_NE(desk.log.text().find("clipboard_unavailable"), std::string::npos);
}

TEST(DictationSpacing, PutsASpaceBetweenTwoDictationsWithNothingInBetween) {
  const struct {
    const char* what;
    const char* first;
    const char* second;
    std::uint32_t window;
    std::optional<std::uint64_t> inputsLater;
    const char* pasted;
  } rows[] = {
      {"in a row", "One.", "Two.", 7, 3, " Two."},
      {"into another window", "One.", "Two.", 8, 3, "Two."},
      {"with a key in between", "One.", "Two.", 7, 4, "Two."},
      {"on a desktop that stopped telling", "One.", "Two.", 7, std::nullopt, "Two."},
      {"punctuation goes on", "One", ", two", 7, 3, ", two"},
      {"a quotation begins", "One:", "\"two\"", 7, 3, " \"two\""},
      {"after a line break", "One.\n", "Two.", 7, 3, "Two."},
      {"a script without spaces", "一。", "二。", 7, 3, "二。"},
  };
  for (const auto& row : rows) {
    std::optional<std::uint64_t> inputs = 3;
    DictationSpacing spacing;
    spacing.follow([&] { return inputs; });
    spacing.setEnabled(true);
    spacing.posted(SpokenText(row.first), 7);
    inputs = row.inputsLater;
    EXPECT_EQ(spacing.spaced(SpokenText(row.second), row.window).reveal(), row.pasted) << row.what;
    spacing.setEnabled(false);
    EXPECT_EQ(spacing.spaced(SpokenText(row.second), row.window).reveal(), row.second) << row.what;
  }
}
