#include "Interface/PlatformWords.h"
#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutChoice.h"
#include "Shortcut/ShortcutHelp.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace murmel;

namespace {

using Kind = ShortcutConfiguration::Kind;

TEST(ShortcutTitle, names_the_keys_as_they_stand_on_keyboards_here) {
  constexpr auto everything = shortcutModifierMask;
  constexpr auto combination = keyModifier::command | keyModifier::shift;
  const std::vector<std::pair<ShortcutConfiguration, std::string>> rows{
      {configuration(ShortcutChoice::functionKey), "Fn"},
      {configuration(ShortcutChoice::optionKey), "Alt"},
      {configuration(ShortcutChoice::doubleTapOption), "Double tap Alt"},
      {configuration(ShortcutChoice::capsLock), "Caps Lock"},
      {configuration(ShortcutChoice::controlKey), "Ctrl"},
      {configuration(ShortcutChoice::disabled), "No shortcut"},
      {configuration(ShortcutChoice::commandShiftD), "Shift+Super+D"},
      {configuration(ShortcutChoice::optionSpace), "Alt+Space"},
      {configuration(ShortcutChoice::controlSpace), "Ctrl+Space"},
      {{Kind::modifiersOnly, virtualKey::leftOption, everything, ""}, "Ctrl+Alt+Shift+Super+Fn"},
      // The words for pasting must not creep into a shortcut that looks like it.
      {{Kind::key, 9, combination, "V"}, "Shift+Super+V"},
      {{Kind::key, virtualKey::deleteKey, keyModifier::control, "Delete"}, "Ctrl+Backspace"},
      {{Kind::key, virtualKey::forwardDelete, keyModifier::control, "Forward Delete"}, "Ctrl+Delete"},
      {{Kind::key, 24, keyModifier::control, "+"}, "Ctrl++"},
      {{Kind::modifiersOnly, 0, 0, ""}, "Not configured"},
  };
  for (const auto& [shortcut, title] : rows) EXPECT_EQ(shortcutTitle(shortcut).toStdString(), title);
}

TEST(ShortcutTitle, differs_for_every_choice) {
  std::set<QString> titles;
  for (const auto choice : allCases<ShortcutChoice>()) titles.insert(shortcutTitle(configuration(choice)));
  EXPECT_EQ(titles.size(), allCases<ShortcutChoice>().size());
}

TEST(ShortcutWords, translates_names_and_symbols_of_keys_only) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {std::string(modeHelpText(Kind::doubleTapModifier)),
       "Tap Alt twice to start, then twice again to stop."},
      {std::string(modeHelpText(Kind::disabled)),
       "Use the tray icon or floating recording control to start dictation."},
      {"⌘ was detected. Command and Shift cannot be used alone because normal Mac typing uses them "
       "constantly.",
       "Super was detected. Super and Shift cannot be used alone because normal typing uses them "
       "constantly."},
      {"⌃⌥Fn detected", "Ctrl+Alt+Fn detected"},
      {"⌥⇧D", "Alt+Shift+D"},
      {"Controls and options", "Controls and options"},
  };
  for (const auto& [text, words] : rows) EXPECT_EQ(shortcutWords(text).toStdString(), words);
}

TEST(PlatformWords, keeps_a_detail_that_merely_contains_a_key_name) {
  EXPECT_EQ(inPlatformWords("Copied — press ⌘V").toStdString(), "Copied — press Ctrl+V");
  EXPECT_EQ(inPlatformWords("Local transcription failed: Command not found").toStdString(),
            "Local transcription failed: Command not found");
}

}  // namespace
