#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutChoice.h"
#include "Shortcut/ShortcutConfiguration.h"
#include "Support/Testing.h"

using Kind = ShortcutConfiguration::Kind;

TEST(ShortcutConfiguration, TitlesNameModifiersInOneOrderAndThenTheKey) {
  struct Row {
    std::string_view when;
    ShortcutConfiguration shortcut;
    std::string_view title;
  };
  const std::vector<Row> rows{
      {"every modifier and a key", {Kind::key, 2, 0x9E0000, "D"}, "⌃⌥⇧⌘FnD"},
      {"a chord shows no label", {Kind::modifiersOnly, 58, 0xA0000, "Option"}, "⌥⇧"},
      {"a chord of nothing, whatever its label", {Kind::modifiersOnly, 58, 0, "Option"}, "Not configured"},
      {"Caps Lock is no modifier", {Kind::modifiersOnly, 57, 0x10000, ""}, "Not configured"},
      {"double tap", configuration(ShortcutChoice::doubleTapOption), "Double tap Option"},
      {"Caps Lock", configuration(ShortcutChoice::capsLock), "Caps Lock"},
      {"disabled", configuration(ShortcutChoice::disabled), "No shortcut"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.shortcut.title(), row.title) << row.when;
}

TEST(ShortcutConfiguration, EveryChoiceSurvivesJsonAndStaysApartFromTheOthers) {
  std::set<std::string> forms;
  for (const auto choice : allCases<ShortcutChoice>()) {
    const auto shortcut = configuration(choice);
    const auto json = shortcut.toJson();
    ASSERT_TRUE(json);
    EXPECT_EQ(ShortcutConfiguration::fromJson(*json), shortcut) << id(choice);
    forms.insert(*json);
  }
  EXPECT_EQ(forms.size(), 9U);
}

TEST(ShortcutConfiguration, JsonKeepsTheExtremesOfEachField) {
  const ShortcutConfiguration shortcut{Kind::key, 65535, std::numeric_limits<std::uint64_t>::max(),
                                       "\"é\\\n←"};
  const auto json = shortcut.toJson();
  ASSERT_TRUE(json);
  EXPECT_EQ(ShortcutConfiguration::fromJson(*json), shortcut);
  EXPECT_EQ(*configuration(ShortcutChoice::commandShiftD).toJson(),
            R"({"kind":"key","keyCode":2,"modifierRawValue":1179648,"keyLabel":"D"})");
  const ShortcutConfiguration illFormed{Kind::key, 2, 0, "\xFF"};
  EXPECT_FALSE(illFormed.toJson());
}

TEST(ShortcutConfiguration, RefusesJsonThatIsNotAWholeShortcut) {
  const std::vector<std::pair<std::string_view, std::string>> rows{
      {"empty", ""},
      {"not an object", "[]"},
      {"cut off", R"({"kind":"key","keyCode":2,"modifierRawValue":0,"keyLabel":)"},
      {"unknown kind", R"({"kind":"tripleTap","keyCode":2,"modifierRawValue":0,"keyLabel":"D"})"},
      {"no label", R"({"kind":"key","keyCode":2,"modifierRawValue":0})"},
      {"key code too large", R"({"kind":"key","keyCode":65536,"modifierRawValue":0,"keyLabel":"D"})"},
  };
  for (const auto& [when, json] : rows) EXPECT_FALSE(ShortcutConfiguration::fromJson(json)) << when;
  EXPECT_TRUE(ShortcutConfiguration::fromJson(
      R"({"added":[1],"keyLabel":"D","modifierRawValue":0,"keyCode":2,"kind":"key"})"))
      << "other keys and another order are fine";
}
