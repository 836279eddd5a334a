#include "KeyboardDesk.h"
#include "Platform/Linux/X11/X11SecureInput.h"
#include "Support/Testing.h"

#include <stop_token>

namespace {

class AnnouncedKeys final : public InjectedKeys {
 public:
  void expect(std::uint32_t keyCode, bool goesDown) override {
    keys.push_back((goesDown ? "+" : "-") + std::to_string(keyCode));
  }
  std::vector<std::string> keys;
};

void setLayout(const std::string& arguments) {
  ASSERT_EQ(std::system(("setxkbmap " + arguments).c_str()), 0);
}

}  // namespace

TEST(X11KeyboardPoster, ModifiersThatAreStillHeldAreReleasedAndNothingStaysStuck) {
  X11KeyboardDesk desk;
  const auto application = desk.launch("Careful");
  const auto handle = *desk.workspace().frontmostApplication();
  // Left and right Alt, Super, Shift, Ctrl, and AltGr.
  setLayout("us");
  std::size_t pasted = 0;
  for (const auto key : std::to_array<std::uint8_t>({64, 108, 133, 134, 50, 62, 37, 105})) {
    SCOPED_TRACE(static_cast<int>(key));
    desk.user.press(key, true);
    EXPECT_EQ(desk.poster().post(PasteChord::controlV, handle), PostResult::posted);
    // A Ctrl that is the chord's own anyway is left to the shortcut that the user may be pressing.
    const bool isControl = key == 37 || key == 105;
    EXPECT_EQ(desk.user.held().empty(), !isControl);
    ++pasted;
    EXPECT_TRUE(desk.waitUntil([&] { return desk.chordsSeenBy(application) == pasted; }));
    desk.user.press(key, false);
  }
  setLayout("de");
  desk.user.press(108, true);  // ISO_Level3_Shift
  EXPECT_EQ(desk.poster().post(PasteChord::controlV, handle), PostResult::posted);
  EXPECT_TRUE(desk.waitUntil([&] { return desk.chordsSeenBy(application) == pasted + 1; }));
  EXPECT_TRUE(desk.user.held().empty());
  desk.user.press(108, false);
  setLayout("us");
}

TEST(X11KeyboardPoster, AKeyWithoutMeaningKeepsALoneModifierFromOpeningAMenu) {
  X11KeyboardDesk desk;
  const auto application = desk.launch("Careful");
  desk.poster().maskHeldModifiers();
  desk.user.press(64, true);
  desk.poster().maskHeldModifiers();
  desk.user.press(64, false);
  ASSERT_TRUE(desk.waitUntil([&] { return application->told("release").size() == 2; }));
  const auto presses = application->told("press");
  ASSERT_EQ(presses.size(), 2U) << "none while no modifier is held";
  EXPECT_TRUE(presses[0].starts_with("64 "));
  EXPECT_EQ(std::system(
                ("xmodmap -pke | grep -qx 'keycode *" + presses[1].substr(0, presses[1].find(' ')) + " = *'")
                    .c_str()),
            0)
      << presses[1];
}

TEST(X11KeyboardPoster, NothingComesBetweenTheLookAndTheKeys) {
  X11KeyboardDesk desk;
  const auto one = desk.launch("One");
  const auto handle = *desk.workspace().frontmostApplication();
  const auto two = desk.launch("Two");
  const auto other = *desk.workspace().frontmostApplication();
  std::size_t posted = 0;
  {
    // Somebody gives the keyboard to and fro as fast as the server can.
    const std::jthread swapping([&](const std::stop_token& stop) {
      const auto x = X11Connection::open("");
      while (!stop.stop_requested()) {
        for (const auto window : {handle.window, other.window}) {
          xcb_set_input_focus((*x)->get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
          (void)x11Reply((*x)->get(), xcb_get_input_focus_reply, xcb_get_input_focus((*x)->get()));
        }
      }
    });
    for (int attempt = 0; attempt < 20'000 && posted < 50; ++attempt)
      posted += desk.poster().post(PasteChord::controlV, handle) == PostResult::posted ? 1 : 0;
  }
  EXPECT_TRUE(desk.waitUntil([&] { return desk.chordsSeenBy(one) == posted; }));
  EXPECT_GT(posted, 0U);
  EXPECT_EQ(desk.chordsSeenBy(two), 0U);
}

TEST(X11KeyboardPoster, LocksAreNoHeldModifiers) {
  X11KeyboardDesk desk;
  const auto application = desk.launch("Careful");
  desk.user.press(66, true);  // Caps Lock on
  desk.user.press(66, false);
  EXPECT_EQ(desk.poster().post(PasteChord::controlV, *desk.workspace().frontmostApplication()),
            PostResult::posted);
  EXPECT_TRUE(desk.waitUntil([&] { return desk.chordsSeenBy(application) == 1; }));
  desk.user.press(66, true);  // and off
  desk.user.press(66, false);
}

TEST(X11KeyboardPoster, FindsTheKeyOfVInEveryLayoutThatHasOne) {
  struct Row {
    const char* layout;
    const char* key;  // "" when there is no V
  };
  AnnouncedKeys announced;
  X11KeyboardDesk desk(&announced);
  const auto application = desk.launch("Editor");
  const auto handle = *desk.workspace().frontmostApplication();
  for (const auto& row : {Row{"us", "55"}, Row{"de", "55"}, Row{"fr", "55"}, Row{"us,ru", "55"},
                          Row{"us -variant dvorak", "60"}, Row{"ru", ""}, Row{"us", "55"}}) {
    SCOPED_TRACE(row.layout);
    setLayout(row.layout);
    const std::string key = row.key;
    EXPECT_EQ(desk.poster().canPost(PasteChord::controlV), !key.empty());
    EXPECT_TRUE(desk.poster().canPost(PasteChord::shiftInsert));
    announced.keys.clear();
    const auto result = desk.poster().post(PasteChord::controlV, handle);
    EXPECT_EQ(result, key.empty() ? PostResult::unavailable : PostResult::posted);
    const std::vector<std::string> expected{"+37", "+" + key, "-" + key, "-37"};
    EXPECT_EQ(announced.keys, key.empty() ? std::vector<std::string>{} : expected);
  }
}

TEST(X11KeyboardPoster, AKeyboardThatSomebodyHasGrabbedIsSecureAndGetsNothing) {
  X11KeyboardDesk desk;
  auto secure = X11SecureInput::open();
  ASSERT_TRUE(secure);
  const auto application = desk.launch("Prompt");
  const auto handle = *desk.workspace().frontmostApplication();
  EXPECT_FALSE((*secure)->isEnabled());
  application->tell("grab");
  ASSERT_TRUE(desk.waitUntil([&] { return !application->told("grabbed").empty(); }));
  EXPECT_TRUE((*secure)->isEnabled());
  EXPECT_TRUE((*secure)->isEnabled()) << "asking changes nothing";
  EXPECT_EQ(desk.poster().post(PasteChord::controlV, handle), PostResult::targetNotInFront);
  application->tell("ungrab");
  ASSERT_TRUE(desk.waitUntil([&] { return !application->told("ungrabbed").empty(); }));
  EXPECT_FALSE((*secure)->isEnabled());
  const auto focusEvents = application->told("focus").size();
  EXPECT_EQ(desk.poster().post(PasteChord::controlV, handle), PostResult::posted);
  ASSERT_TRUE(desk.waitUntil([&] { return desk.chordsSeenBy(application) == 1; }));
  EXPECT_EQ(application->told("focus").size(), focusEvents) << "looking does not disturb the focus";
}
