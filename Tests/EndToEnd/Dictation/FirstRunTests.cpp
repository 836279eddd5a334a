#include "DictationDesk.h"

namespace {

constexpr std::uint8_t enterKey = 36;
constexpr std::uint8_t tabKey = 23;
constexpr std::uint8_t superKey = 133;
constexpr const char* setupIsInFront = "xdotool getactivewindow getwindowname | grep -q '^Murmel Setup$'";

}  // namespace

TEST_F(DictationDesk, TheFirstRunLeadsFromABareProfileToWordsByKeyboardAlone) {
  const auto defaults = configuration() / "defaults.json";
  std::filesystem::remove(defaults);
  const auto tap = [this](std::uint8_t key) { desk.user.strike({key}); };
  murmel.emplace(Strings{MURMEL_EXECUTABLE}, file("murmel.log"));
  ASSERT_TRUE(waitUntilCommand(setupIsInFront)) << murmel->log();
  ASSERT_TRUE(waitUntilCommand(std::string("! ") + pillIsVisible)) << murmel->log();
  for (const char* step : {"model", "microphone", "shortcut"}) {
    SCOPED_TRACE(step);
    tap(enterKey);
    desk.loop.runFor(std::chrono::milliseconds(100));
  }
  tap(enterKey);  // takes the proposal, since Fn cannot be heard here
  const auto holds = [&](const char* words) {
    return waitUntil([&] { return contentsOf(defaults).find(words) != std::string::npos; });
  };
  ASSERT_TRUE(holds("settings.shortcutConfiguration")) << contentsOf(defaults);
  ASSERT_TRUE(waitUntilCommand(std::string("! ") + isRecording)) << "the trial of the microphone has ended";
  tap(enterKey);  // a line in the field, which finishes nothing
  // The shortcut is heard over another connection than these keys.
  desk.loop.runFor(std::chrono::seconds(1));
  desk.user.press(controlKey, true);
  desk.user.press(superKey, true);
  ASSERT_TRUE(waitUntilCommand(isRecording)) << murmel->log();
  say(tenOfClubs);
  desk.user.press(superKey, false);
  desk.user.press(controlKey, false);
  ASSERT_TRUE(waitForSummaries(1)) << murmel->log();
  ASSERT_TRUE(waitUntilCommand(std::string("! ") + pillIsVisible));
  EXPECT_EQ(contentsOf(defaults).find("onboarding.completed"), std::string::npos);
  tap(tabKey);
  tap(enterKey);
  EXPECT_TRUE(waitUntilCommand(std::string("! ") + setupIsVisible)) << murmel->log();
  EXPECT_TRUE(holds("onboarding.completed")) << contentsOf(defaults);
}
