#include "DictationDesk.h"

namespace {

constexpr const char* settingsAreInFront =
    "xdotool getactivewindow getwindowname | grep -q '^Murmel Settings$'";

}  // namespace

TEST_F(DictationDesk, WhatIsChangedInTheWindowIsInTheFileAndActs) {
  settings(R"("settings.shortcut": "optionKey")");
  constexpr std::uint8_t control = 37;
  constexpr std::uint8_t super = 133;
  start();
  const auto defaults = configuration() / "defaults.json";
  /// Finds the control by its words, and presses a key on it.
  const auto change = [&](const std::string& words, const std::string& key, const std::string& stored) {
    SCOPED_TRACE(words);
    EXPECT_EQ(command("settings"), 0);
    ASSERT_TRUE(waitUntilCommand(settingsAreInFront)) << murmel->log();
    outputOf("xdotool key ctrl+f type --delay 0 '" + words + "'; xdotool key Tab Tab " + key);
    EXPECT_TRUE(waitUntil([&] { return contentsOf(defaults).find(stored) != std::string::npos; }))
        << contentsOf(defaults);
  };

  change("Start when I log in", "space", "");
  EXPECT_TRUE(waitUntilCommand("ls \"$XDG_CONFIG_HOME\"/autostart/*urmel*.desktop"));
  change("Show in the task bar", "space", R"("settings.showInDock": false)");
  EXPECT_TRUE(
      waitUntilCommand("xprop -id $(xdotool search --onlyvisible --name '^Murmel Settings$') _NET_WM_STATE | "
                       "grep -q SKIP_TASKBAR"));
  change("Keep the indicator on the screen", "space", R"("settings.showRestingIndicator": true)");
  EXPECT_TRUE(waitUntilCommand(pillIsVisible));
  change("edge of the screen", "Down", R"("settings.overlayAnchor": "bottom")");
  EXPECT_TRUE(
      waitUntilCommand("eval $(xdotool search --onlyvisible --name '^Murmel$' getwindowgeometry --shell); "
                       "[ $Y -gt $(($(xdotool getdisplaygeometry | cut -d' ' -f2) / 2)) ]"));
  change("Insert phrases", "space", R"("settings.insertWhileRecording": true)");
  change("Restore the clipboard", "space", R"("settings.restorePreviousClipboard": false)");
  change("Keep a history", "space", R"("settings.historyEnabled": true)");
  change("hotkey hold tap", "Home", R"("settings.shortcutConfiguration")");
  const auto editor = openEditor("spoken");
  for (const auto key : {control, super}) desk.user.press(key, true);
  ASSERT_TRUE(waitUntilCommand(isRecording)) << murmel->log();
  say(eightOfSpadesAndMore);
  EXPECT_TRUE(waitForText(eightOfSpadesAndMore.word, "spoken"))
      << "while the keys are held: " << murmel->log();
  for (const auto key : {super, control}) desk.user.press(key, false);
  EXPECT_TRUE(waitForClipboard(eightOfSpadesAndMore.word));
  EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(data() / "history.sealed"); }));
}
