#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutChoice.h"
#include "Shortcut/ShortcutConflicts.h"
#include "Support/Testing.h"

using namespace murmel::keyModifier;
using Kind = ShortcutConfiguration::Kind;

TEST(ShortcutConflicts, NameWhatElseHappensAndNothingForTheProposals) {
  struct Row {
    ShortcutConfiguration shortcut;
    KeyboardFacts facts;
    std::vector<std::string> words;  ///< one in each sentence
  };
  const std::vector<Row> rows{
      {configuration(ShortcutChoice::commandShiftD), {}, {"GTK"}},
      {configuration(ShortcutChoice::optionSpace), {}, {"menu of the window"}},
      {configuration(ShortcutChoice::controlSpace), {.isTaken = true}, {"reserved", "Input methods"}},
      {configuration(ShortcutChoice::controlKey), {}, {"Ctrl+C"}},
      {configuration(ShortcutChoice::optionKey), {}, {"Alt+Tab"}},
      {configuration(ShortcutChoice::capsLock), {.capsLockIsRemapped = true}, {"Caps Lock"}},
      {configuration(ShortcutChoice::capsLock), {.isTaken = true}, {}},
      {{Kind::modifiersOnly, 56, option | shift, ""}, {}, {"layout"}},
      {{Kind::key, 8, control, "C"}, {}, {"copy"}},
      {{Kind::key, 3, option | shift, "F"}, {}, {"Alt with a letter"}},
      {{Kind::key, 96, control, "Key 96"}, {}, {}},
      {{Kind::key, 2, control | command, "D"}, {}, {}},
      {proposedShortcuts()[0], {}, {}},
      {proposedShortcuts()[1], {}, {}},
  };
  const auto isKey = [](const ShortcutConfiguration& shortcut) { return shortcut.kind == Kind::key; };
  EXPECT_EQ(proposedShortcuts(isKey).front(), configuration(ShortcutChoice::controlSpace))
      << "where no modifier is heard alone";
  for (const auto& row : rows) {
    const auto found = shortcutConflicts(row.shortcut, row.facts);
    ASSERT_EQ(found.size(), row.words.size()) << row.shortcut.title();
    for (std::size_t index = 0; index < found.size(); ++index)
      EXPECT_NE(found[index].find(row.words[index]), std::string::npos) << row.shortcut.title();
  }
}
