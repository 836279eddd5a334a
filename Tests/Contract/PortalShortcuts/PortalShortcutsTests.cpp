#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Portal/PortalShortcuts.h"
#include "Platform/VirtualKeyCode.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/RealLoop.h"

#include <gtest/gtest.h>

namespace murmel::test {

TEST(PortalShortcuts, AreHeardUntilThePortalClosesThemOrTheUserRefuses) {
  RealLoop loop;
  ApplicationProcess portal({"/usr/bin/python3", MURMEL_PORTAL});
  ASSERT_TRUE(loop.waitUntil([&] { return !portal.told("ready").empty(); }));
  const auto bus = SessionBus::open(loop.executor);
  const auto keymap = *UsersKeymap::open(loop.executor);
  PortalShortcuts shortcuts(*bus, *keymap, "app.murmel.Test");
  const ShortcutRequest request{.keyCode = virtualKey::space,
                                .modifiers = keyModifier::control | keyModifier::shift};
  EXPECT_FALSE(shortcuts.permission(request).reason.empty()) << "the user is asked to press it";

  std::vector<ShortcutActivity> heard;
  const auto hear = [&](const ShortcutEvent& event) { heard.push_back(std::get<ShortcutActivity>(event)); };
  auto installed = shortcuts.install(request, hear);
  ASSERT_TRUE(installed && installed->enable());
  EXPECT_FALSE(shortcuts.install(request, hear)) << "one at a time";
  ASSERT_TRUE(loop.waitUntil([&] { return !portal.told("bound").empty(); }));
  EXPECT_EQ(portal.told("registered"), std::vector<std::string>{"app.murmel.Test"});
  EXPECT_EQ(portal.told("bound"), std::vector<std::string>{"SHIFT+CTRL+space"});
  using enum ShortcutActivity;
  for (const char* signal : {"Activated", "Activated", "Deactivated", "Closed"}) portal.tell(signal);
  ASSERT_TRUE(loop.waitUntil([&] { return heard.size() == 3; }));
  EXPECT_EQ(heard, (std::vector{pressed, released, lost})) << "and nothing of the other session";
  EXPECT_FALSE(installed->enable());
  installed.reset();

  heard.clear();
  portal.tell("user refuses");
  installed = shortcuts.install(request, hear);
  ASSERT_TRUE(installed);
  ASSERT_TRUE(loop.waitUntil([&] { return heard == std::vector{lost}; }));
  EXPECT_FALSE(shortcuts.permission(request).granted) << "the next road is named instead";
}

}  // namespace murmel::test
