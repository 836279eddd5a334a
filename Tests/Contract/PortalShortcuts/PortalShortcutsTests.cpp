#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Portal/TriedShortcuts.h"
#include "Platform/VirtualKeyCode.h"
#include "Shell/AbsentServices.h"
#include "Support/Testing.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/RealLoop.h"

TEST(ShortcutTrial, GivesUpOnADesktopThatStaysSilentWhileTheUserIsAsked) {
  using Event = ShortcutTrial::Event;
  using Verdict = ShortcutTrial::Verdict;
  struct Row {
    const char* what;
    std::vector<std::pair<Event, int>> events;  ///< and the second of each
    Verdict at100;
  };
  for (const auto& [what, events, verdict] : std::vector<Row>{
           {"nobody asks", {{Event::bound, 0}}, Verdict::open},
           {"no press comes", {{Event::bound, 0}, {Event::asked, 79}}, Verdict::silent},
           {"there is time yet", {{Event::bound, 0}, {Event::asked, 81}}, Verdict::open},
           {"asking again is not asking anew",
            {{Event::bound, 0}, {Event::asked, 79}, {Event::asked, 90}},
            Verdict::silent},
           {"a dialog is open", {{Event::asked, 0}}, Verdict::open},
           {"it was open for long", {{Event::asked, 0}, {Event::bound, 81}}, Verdict::open},
           {"the window was closed",
            {{Event::bound, 0}, {Event::asked, 50}, {Event::leftAlone, 60}},
            Verdict::open},
           {"heard in time", {{Event::bound, 0}, {Event::asked, 70}, {Event::heard, 80}}, Verdict::heard},
           {"heard too late", {{Event::bound, 0}, {Event::asked, 70}, {Event::heard, 91}}, Verdict::silent},
           {"heard before the user spoke",
            {{Event::heard, 70}, {Event::nothingHappened, 71}},
            Verdict::heard},
           {"the user says so", {{Event::bound, 0}, {Event::nothingHappened, 71}}, Verdict::silent},
           {"bound anew after the portal was gone",
            {{Event::bound, 0}, {Event::asked, 70}, {Event::lost, 75}, {Event::bound, 85}},
            Verdict::open},
           {"refused", {{Event::heard, 1}, {Event::refused, 2}}, Verdict::refused},
       }) {
    ShortcutTrial trial;
    for (const auto& [event, second] : events) trial.take(event, Instant(std::chrono::seconds(second)));
    trial.pass(Instant(std::chrono::seconds(100)));
    EXPECT_EQ(trial.verdict(), verdict) << what;
  }
}

TEST(TriedShortcuts, AreHeardUntilThePortalEndsItAndThenTakeTheNextRoad) {
  RealLoop loop;
  ApplicationProcess desktop({"/usr/bin/python3", MURMEL_PORTAL});
  ASSERT_TRUE(loop.waitUntil([&] { return !desktop.told("ready").empty(); }));
  const auto bus = SessionBus::open(loop.executor);
  const auto keymap = *UsersKeymap::open(loop.executor);
  Portal portal(*bus, "app.murmel.Test");
  const auto open = [&] {
    return std::make_unique<TriedShortcuts>(loop.executor, loop.clock, portal, *keymap, 1,
                                            std::make_unique<NoShortcuts>("next"));
  };
  auto shortcuts = open();
  const ShortcutRequest request{.keyCode = virtualKey::space,
                                .modifiers = keyModifier::control | keyModifier::shift};
  std::vector<ShortcutActivity> heard;
  const auto hear = [&](const ShortcutEvent& event) { heard.push_back(std::get<ShortcutActivity>(event)); };
  auto installed = shortcuts->install(request, hear);
  ASSERT_TRUE(installed && installed->enable());
  EXPECT_FALSE(shortcuts->install(request, hear)) << "one at a time";
  ASSERT_TRUE(loop.waitUntil([&] { return !desktop.told("bound").empty(); }));
  EXPECT_EQ(desktop.told("registered"), std::vector<std::string>{"app.murmel.Test"});
  EXPECT_EQ(desktop.told("bound"), std::vector<std::string>{"SHIFT+CTRL+space"});
  EXPECT_TRUE(shortcuts->trials()->isOpen(request));
  using enum ShortcutActivity;
  for (const char* signal : {"Activated", "Activated", "Deactivated", "Closed"}) desktop.tell(signal);
  ASSERT_TRUE(loop.waitUntil([&] { return heard.size() == 3; }));
  EXPECT_EQ(heard, (std::vector{pressed, released, lost})) << "and nothing of the other session";
  EXPECT_FALSE(installed->enable());
  installed.reset();
  const auto memory = shortcuts->trials()->memory();
  shortcuts = open();
  shortcuts->trials()->recall(memory);
  EXPECT_TRUE(shortcuts->permission(request).granted && shortcuts->permission(request).reason.empty());

  const auto other = ShortcutRequest{.keyCode = virtualKey::space, .modifiers = keyModifier::control};
  heard.clear();
  installed = shortcuts->install(other, hear);
  ASSERT_TRUE(loop.waitUntil([&] { return desktop.told("bound").size() == 2; }));
  shortcuts->trials()->nothingHappened();
  ASSERT_TRUE(loop.waitUntil([&] { return heard == std::vector{lost}; }));
  EXPECT_FALSE(installed->enable());
  EXPECT_FALSE(shortcuts->permission(other).granted) << "the next road says why";
  ASSERT_TRUE(loop.waitUntil([&] { return desktop.told("closed").size() == 1; })) << "no late word";

  installed.reset();
  heard.clear();
  desktop.tell("refuse");
  installed = shortcuts->install(request, hear);
  ASSERT_TRUE(loop.waitUntil([&] { return heard == std::vector{lost}; }));
  EXPECT_FALSE(shortcuts->permission(request).granted);
}
