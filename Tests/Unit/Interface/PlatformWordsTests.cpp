#include "Interface/Common/ScreenTexts.h"
#include "Interface/PlatformWords.h"
#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutChoice.h"
#include "Shortcut/ShortcutHelp.h"
#include "Support/Testing.h"

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

TEST(PlatformWords, says_the_texts_of_the_core_in_the_words_of_this_desktop) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {std::string(modeHelpText(Kind::doubleTapModifier)),
       "Tap Alt twice to start, then twice again to stop."},
      {"⌘ was detected. Command and Shift cannot be used alone because normal Mac typing uses them "
       "constantly. "
       "Use Fn, Option, Control, or hold two modifiers together.",
       "Super was detected. Super and Shift cannot be used alone because normal typing uses them constantly. "
       "Use Fn, Alt, Ctrl, or hold two modifiers together."},
      {"⌃⌥Fn detected", "Ctrl+Alt+Fn detected"},
      {"⇧Return detected", "Shift+Enter detected"},
      {"Copied — press ⌘V", "Copied — press Ctrl+V"},
      {"Part of the recording was not recognized. Audio configuration changed. Recording stopped; captured "
       "audio processed. Insertion stopped. Remaining text copied — press ⌘V.",
       "Part of the recording was not recognized. Audio configuration changed. Recording stopped; captured "
       "audio processed. Insertion stopped. Remaining text copied — press Ctrl+V."},
      // Texts in texts, also with sentences behind them.
      {"Language models cannot run here: Double tap Option. Insertion stopped. Remaining text copied — press "
       "⌘V.",
       "Language models cannot run here: Double tap Alt. Insertion stopped. Remaining text copied — press "
       "Ctrl+V."},
      {"The setting \"%2\" cannot be taken over. Double tap Option",
       "The setting \"%2\" cannot be taken over. Double tap Alt"},
      // A detail that merely looks like one of the texts stays what it is.
      {"Local transcription failed: Command ⌘V not found",
       "Local transcription failed: Command ⌘V not found"},
      {"Whatever ⌘V is.", "Whatever ⌘V is."},
  };
  for (const auto& [text, words] : rows) EXPECT_EQ(inPlatformWords(text).toStdString(), words);
  EXPECT_EQ(inPlatformWords("Copied — press ⌘V", "Ctrl+Shift+V"), "Copied — press Ctrl+Shift+V");
}

TEST(ScreenTexts, name_each_text_once_and_never_the_keys_and_words_of_another_platform) {
  std::set<std::string_view> seen;
  for (const auto part : screenTexts()) {
    for (const auto& row : part) {
      EXPECT_TRUE(seen.insert(row.core).second) << row.core;
      const QString screen = row.screen;
      for (const auto* word :
           {"⌘", "⌥", "⌃", "Mac", "Option", "Command", "Control ", "menu bar", "Keychain", "Dock"})
        EXPECT_FALSE(screen.contains(word)) << row.screen;
      EXPECT_EQ(screen.contains("%1"), row.argument != ScreenText::Argument::none) << row.screen;
    }
  }
}

}  // namespace
