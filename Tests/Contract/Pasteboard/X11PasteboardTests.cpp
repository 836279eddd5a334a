// What only a real selection owner can do wrong.

#include "PasteboardDesk.h"
#include "Platform/Linux/Clipboard/ClipboardKeeperProcess.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Support/Testing.h"

#include <future>

using namespace std::string_literals;

namespace {

class X11PasteboardTest : public ::testing::Test {
 protected:
  template <class T>
  T await(Task<T> task) {
    return desk.runner.await(std::move(task));
  }
  /// Real time that `work` takes.
  template <class Work>
  Duration timeOf(Work work) {
    const auto start = desk.clock.now();
    work();
    return desk.clock.now() - start;
  }

  X11PasteboardTest() { std::filesystem::copy_file(MURMEL_KEEPER, keeping.executable); }
  /// The keeper of this test, which is nobody's child any more.
  [[nodiscard]] bool keeperRuns() const {
    const auto pattern = folder.path().string() + "/[m]rm";  // not the shell that asks
    return std::system(("pgrep -f '" + pattern + "' >/dev/null").c_str()) == 0;
  }
  TemporaryFolder folder;
  ClipboardKeeperProcess::Configuration keeping{folder.path() / "mrm-clipboard-keeper",
                                                [](const std::filesystem::path&) { return true; },
                                                {std::string("DISPLAY=") + std::getenv("DISPLAY")}};

  X11Desk desk;
  ClipboardPasteboard& general = desk.boards->general();
};

}  // namespace

TEST_F(X11PasteboardTest, CapturesWhatComesInPieces) {
  auto contents = tenTypes();
  contents.items.front().values.front().data.resize(300'000);
  OwnerBehaviour pieces;
  pieces.sendsInPieces = true;
  desk.writeByAnother(contents, pieces);
  const auto captured = await(general.capture());
  EXPECT_TRUE(captured.complete);
  EXPECT_TRUE(*captured.contents == contents);
}

TEST_F(X11PasteboardTest, AnOwnerThatHangsOrStallsHoldsUpNobodyAndCostsOnlyWhatItWithholds) {
  struct Row {
    const char* name;
    OwnerBehaviour behaviour;
    std::size_t captured;
    bool complete;
  };
  OwnerBehaviour hangs;
  hangs.answers = false;
  OwnerBehaviour stalls;
  stalls.stallsAt = {"image/png"};
  OwnerBehaviour refuses;
  refuses.refuses = {"image/png"};
  for (const auto& row : {Row{"hangs", hangs, 0, false}, Row{"stalls in a picture", stalls, 6, false},
                          Row{"refuses what it offers", refuses, 9, true}}) {
    SCOPED_TRACE(row.name);
    desk.writeByAnother(tenTypes(), row.behaviour);
    Awaiting captured(general.capture());
    const auto count = await(general.changeCount());
    desk.runner.executor.waitUntil([&] { return captured.done() || desk.owner->isStuck(); });
    // The clipboard is taken at once, and the capture ends with what it has.
    EXPECT_LT(timeOf([&] { await(general.mrmReplace(oneText("words"))); }), 500ms);
    EXPECT_EQ(desk.readByAnother("UTF8_STRING"), "words");
    ASSERT_TRUE(desk.runner.executor.waitUntil([&] { return captured.done(); }));
    EXPECT_EQ(captured->complete, row.complete);
    EXPECT_EQ(captured->changeCount, count);
    const auto& items = captured->contents->items;
    EXPECT_GE(items.empty() ? 0 : items.front().values.size(), row.captured);
    EXPECT_EQ(captured->contents->find("UTF8_STRING") != nullptr, row.captured > 0) << "text comes first";
  }
}

TEST_F(X11PasteboardTest, AnOwnerThatDiesLeavesAnEmptyClipboard) {
  desk.writeByAnother(oneText("gone"));
  const auto before = await(general.changeCount());
  desk.owner.reset();
  EXPECT_NE(await(general.changeCount()), before);
  const auto captured = await(general.capture());
  EXPECT_TRUE(captured.complete);
  EXPECT_TRUE(captured.contents->isEmpty());
}

TEST_F(X11PasteboardTest, SendsLargeValuesInPiecesSeveralToOneWindow) {
  const auto contents = tenTypes();
  auto two = contents;
  two.items.front().values.push_back({"image/copy", contents.items.front().values.front().data, "", 8});
  await(general.mrmReplace(two));
  const auto values = desk.otherReader.readTogether({"image/png", "image/copy", "UTF8_STRING", "no/such"});
  ASSERT_EQ(values.size(), 4U);
  EXPECT_TRUE(values[0] && values[0]->data == contents.items.front().values.front().data);
  EXPECT_TRUE(values[1] && values[1]->data == values[0]->data);
  EXPECT_EQ(values[2]->data, "h\xC3\xA9llo");
  EXPECT_FALSE(values[3]);
}

TEST_F(X11PasteboardTest, SurvivesAReaderThatDiesAndGoesOnServing) {
  await(general.mrmReplace(tenTypes()));
  ClipboardReader("CLIPBOARD").beginAndDie("image/png");
  EXPECT_TRUE(desk.readByAnother("image/png") == tenTypes().items.front().values.front().data);
}

TEST_F(X11PasteboardTest, ServesWhileTheMainThreadIsBusy) {
  await(general.mrmReplace(oneText("words")));
  EXPECT_EQ(desk.readByAnother("UTF8_STRING"), "words") << "this thread is the main thread, and it blocks";
}

TEST_F(X11PasteboardTest, ALateReaderOfAnEarlierPasteGetsNothingRatherThanTheOldClipboard) {
  await(general.mrmReplace(oneText("words")));
  const auto timeOfPaste = desk.otherReader.now();
  EXPECT_EQ(desk.otherReader.readAsOf("UTF8_STRING", timeOfPaste)->data, "words");
  // The server counts milliseconds: the restore belongs to a later one.
  while (desk.otherReader.now() == timeOfPaste) std::this_thread::yield();
  await(general.mrmReplace(oneText("old clipboard")));
  EXPECT_FALSE(desk.otherReader.readAsOf("UTF8_STRING", timeOfPaste));
  EXPECT_EQ(desk.otherReader.readAsOf("UTF8_STRING", desk.otherReader.now())->data, "old clipboard");
}

TEST_F(X11PasteboardTest, ListsOnlyDataAndTheProtocolItKeeps) {
  await(general.mrmReplace(oneText("words")));
  EXPECT_EQ(desk.otherReader.types(), (Strings{"TIMESTAMP", "TARGETS", "MULTIPLE", "UTF8_STRING"}));
  EXPECT_EQ(desk.otherReader.read("TIMESTAMP")->unitBits, 32);
}

TEST_F(X11PasteboardTest, AKeeperServesTheContentsAfterUsUntilSomebodyElseWrites) {
  LinuxProcessLauncher launcher;
  const std::string picture(3'000'000, 'p');
  const ClipboardSnapshot contents{{{{{"UTF8_STRING", "words", "", 8},
                                      {"image/png", picture, "", 8},
                                      {"x", "\1\0\0\0"s, "INTEGER", 32}}}}};
  for (const bool handsOver : {true, false}) {
    desk.boards.reset();
    std::optional<ClipboardKeeperProcess> keeper;
    keeper.emplace(launcher, keeping);
    auto boards = X11Pasteboards::open(desk.runner.executor, desk.clock, {}, &*keeper);
    ASSERT_TRUE(boards);
    ASSERT_TRUE(await((*boards)->general().mrmReplace(oneText("an earlier text"))));
    ASSERT_TRUE(await((*boards)->general().mrmReplace(contents)));
    if (handsOver) {
      EXPECT_EQ(await((*boards)->general().handOver()), ClipboardHandOver::arranged);
    }
    boards->reset();
    keeper.reset();
    const auto readLater = [&](const std::string& type) {
      std::optional<std::string> value;
      desk.runner.executor.waitUntil([&] { return (value = desk.readByAnother(type)).has_value(); });
      return value;
    };
    EXPECT_EQ(readLater("UTF8_STRING"), "words");
    EXPECT_EQ(readLater("image/png"), picture);
    EXPECT_EQ(desk.otherReader.read("x")->unitBits, 32);
    EXPECT_TRUE(keeperRuns());

    desk.writeByAnother(oneText("theirs"));
    EXPECT_TRUE(desk.runner.executor.waitUntil([&] { return !keeperRuns(); }));
    EXPECT_EQ(desk.readByAnother("UTF8_STRING"), "theirs");
  }
}

TEST_F(X11PasteboardTest, AKeeperLeavesWhatOthersWroteAlone) {
  LinuxProcessLauncher launcher;
  ClipboardKeeperProcess keeper(launcher, keeping);
  auto boards = X11Pasteboards::open(desk.runner.executor, desk.clock, {}, &keeper);
  ASSERT_TRUE(boards);
  ASSERT_TRUE(await((*boards)->general().mrmReplace(oneText("words"))));
  ASSERT_TRUE(desk.runner.executor.waitUntil([&] { return keeperRuns(); }));
  desk.writeByAnother(oneText("theirs"));
  EXPECT_EQ(await((*boards)->general().handOver()), ClipboardHandOver::notOurs)
      << "what others own is theirs to keep";
  EXPECT_TRUE(desk.runner.executor.waitUntil([&] { return !keeperRuns(); }));
  EXPECT_EQ(desk.readByAnother("UTF8_STRING"), "theirs");
}

TEST_F(X11PasteboardTest, AKeeperReachesTheNetworkOnlyWhereTheDisplayIs) {
  struct Recorder final : ProcessLauncher {
    std::expected<std::unique_ptr<ChildProcess>, std::string> launch(const ProcessRequest& request) override {
      network.set_value(request.sandbox.network);
      return std::unexpected("not now");
    }
    std::promise<ProcessSandbox::Network> network;
  };
  using Network = ProcessSandbox::Network;
  const std::pair<Strings, Network> rows[] = {
      {{"DISPLAY=:0"}, Network::unixOnly},
      {{"DISPLAY=unix:0.1"}, Network::unixOnly},
      {{"DISPLAY=localhost:10.0"}, Network::internet},
      {{"DISPLAY=localhost:10.0", "WAYLAND_DISPLAY=wayland-0"}, Network::unixOnly},
  };
  for (const auto& [environment, network] : rows) {
    Recorder recorder;
    ClipboardKeeperProcess keeper(recorder, {keeping.executable, keeping.mayExecute, environment});
    keeper.keep(shared(oneText("words")), 0);
    EXPECT_EQ(recorder.network.get_future().get(), network) << environment.front();
  }
}

TEST_F(X11PasteboardTest, TheTwoSelectionsAreApart) {
  auto& primary = desk.boards->primary();
  await(general.mrmReplace(oneText("clipboard")));
  const auto count = await(general.changeCount());
  await(primary.mrmReplace(oneText("primary")));
  EXPECT_EQ(await(general.changeCount()), count);
  EXPECT_EQ(desk.readByAnother("UTF8_STRING"), "clipboard");
  EXPECT_EQ(ClipboardReader("PRIMARY").read("UTF8_STRING")->data, "primary");
}
