#include "Platform/Fake/FakePasteboard.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Platform/Fake/FakeWorkspace.h"
#include "Platform/Linux/Portal/PortalKeyboard.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/RealLoop.h"

#include <algorithm>
#include <csignal>

#include <gtest/gtest.h>

namespace murmel::test {

/// Another start of Murmel, on the desktop of the one before.
struct Start {
  explicit Start(RealLoop& loop, SecretStore& secrets)
      : bus(SessionBus::open(loop.executor)),
        portal(*bus, "app.murmel.Test"),
        token(loop.executor, secrets, "app.murmel.Test.portal"),
        session(portal, token, {.shortcuts = 1, .keyboard = 2}) {}
  std::unique_ptr<SessionBus> bus;
  Portal portal;
  PortalToken token;
  RemoteDesktopSession session;
};

TEST(PortalKeyboard, PressesKeysFromTheUsersWordToTheEndThatTheyGiveIt) {
  RealLoop loop;
  ApplicationProcess desktop({"/usr/bin/python3", MURMEL_PORTAL});
  ASSERT_TRUE(loop.waitUntil([&] { return !desktop.told("ready").empty(); }));
  const auto keymap = *UsersKeymap::open(loop.executor);
  FakeSecretStore secrets;
  FakeWorkspace workspace(loop.executor);
  FakePasteboard clipboard(loop.executor, loop.clock);
  RunningApplication target;
  target.client.processIdentifier = 77;
  target.window = 1;
  workspace.bringToFront(target);
  const auto keys = [&] { return desktop.told("key"); };
  using Standing = RemoteDesktopSession::Standing;
  const auto stands = [&](const Start& start, Standing standing) {
    return loop.waitUntil([&] { return start.session.standing() == standing; });
  };
  {
    Start first(loop, secrets);
    PortalKeyboard keyboard(loop.executor, first.session, workspace, *keymap, clipboard);
    EXPECT_EQ(keyboard.post(PasteChord::controlV, target), PostResult::unavailable);
    first.session.ask();
    ASSERT_TRUE(loop.waitUntil([&] { return desktop.told("asks").size() == 1; }));
    desktop.tell("answer twice");
    desktop.tell("allow");
    ASSERT_TRUE(stands(first, Standing::open));
    EXPECT_EQ(keyboard.post(PasteChord::controlV, RunningApplication{}), PostResult::targetNotInFront);
    ASSERT_TRUE(loop.waitUntil([&] { return !keys().empty(); }));
    const auto before = keys().size();
    loop.await(clipboard.mrmReplace({{{{{"UTF8_STRING", "words", "", 8}}}}}));
    ASSERT_EQ(keyboard.post(PasteChord::controlV, target), PostResult::posted);
    clipboard.readBy(target.client, "UTF8_STRING");
    ASSERT_TRUE(loop.waitUntil([&] { return keys().back() == "29 0"; }));
    const auto all = keys();
    const std::vector<std::string> chord(all.end() - 4, all.end());
    EXPECT_EQ(chord, (std::vector<std::string>{"29 1", "47 1", "47 0", "29 0"}));
    EXPECT_EQ(std::ranges::count(all.begin() + static_cast<std::ptrdiff_t>(before), all.end(), "56 0"), 1)
        << "a held Alt";
  }
  {
    Start again(loop, secrets);
    again.session.restore();
    ASSERT_TRUE(stands(again, Standing::open)) << "by the token";
    EXPECT_EQ(desktop.told("asks").size(), 1U);
    PortalKeyboard keyboard(loop.executor, again.session, workspace, *keymap, clipboard);
    ASSERT_EQ(keyboard.post(PasteChord::shiftInsert, target), PostResult::posted);
    ASSERT_TRUE(loop.waitUntil([&] { return keys().back() == "42 0"; })) << "nobody has read it";
    desktop.tell("Closed");
    ASSERT_TRUE(stands(again, Standing::ended));
    EXPECT_EQ(keyboard.post(PasteChord::controlV, target), PostResult::unavailable);
    again.session.restore();
    EXPECT_EQ(again.session.standing(), Standing::ended) << "against the user's word";
    // Each token is good for one start: it was exchanged.
    again.session.ask();
    ASSERT_TRUE(stands(again, Standing::open));
  }
  secrets.remove("app.murmel.Test.portal", "remote-desktop");
  {
    Start refused(loop, secrets);
    refused.session.restore();
    refused.session.ask();
    ASSERT_TRUE(loop.waitUntil([&] { return desktop.told("asks").size() == 2; }));
    desktop.tell("deny");
    ASSERT_TRUE(stands(refused, Standing::refused));
    refused.session.ask();
    ASSERT_TRUE(loop.waitUntil([&] { return desktop.told("asks").size() == 3; }));
  }
  ASSERT_TRUE(loop.waitUntil([&] { return desktop.told("closed").size() == 4; })) << "quit while it asks";
  Start orphan(loop, secrets);
  orphan.session.ask();
  ASSERT_TRUE(stands(orphan, Standing::asking));
  ::kill(desktop.identifier(), SIGKILL);
  ASSERT_TRUE(stands(orphan, Standing::closed)) << "the portal is gone";
}

}  // namespace murmel::test
