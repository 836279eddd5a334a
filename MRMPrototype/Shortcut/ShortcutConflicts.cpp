#include "Shortcut/ShortcutConflicts.h"

#include "Foundation/Text/Text.h"
#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutChoice.h"

namespace murmel {

namespace {

using Kind = ShortcutConfiguration::Kind;
using namespace keyModifier;

constexpr std::string_view taken = "Another program has reserved these keys: both would hear them.";
constexpr std::string_view remapped =
    "This keyboard layout makes another key of Caps Lock, so the shortcut would do nothing.";
constexpr std::string_view controlAlone = "Every Ctrl+C and Ctrl+V would start a dictation too.";
constexpr std::string_view altAlone = "Alt opens menus, and every Alt+Tab would start a dictation too.";
constexpr std::string_view layoutSwitch = "Many keyboards switch their layout with these keys.";
constexpr std::string_view typesToo =
    "Programs made with GTK write the letter too, for they do not know Super.";
constexpr std::string_view windowMenu = "Alt+Space opens the menu of the window in front.";
constexpr std::string_view menuLetter = "Alt with a letter opens menus in many programs.";
constexpr std::string_view editing = "Programs use Ctrl with a letter to copy, paste, undo and the like.";
constexpr std::string_view inputMethod = "Input methods and editors use Ctrl+Space.";

bool isLetter(const ShortcutConfiguration& shortcut) {
  return text::characterCount(shortcut.keyLabel) == 1 && shortcut.keyCode < virtualKey::home;
}

void addForKey(const ShortcutConfiguration& shortcut, std::vector<std::string_view>& found) {
  const auto modifiers = shortcut.modifierRawValue;
  const bool isSpace = shortcut.keyCode == virtualKey::space;
  if ((modifiers & ~(shift | command)) == 0 && isLetter(shortcut)) found.push_back(typesToo);
  if (modifiers == option && isSpace) found.push_back(windowMenu);
  if ((modifiers & ~shift) == option && isLetter(shortcut)) found.push_back(menuLetter);
  if ((modifiers & ~shift) == control && isLetter(shortcut)) found.push_back(editing);
  if (modifiers == control && isSpace) found.push_back(inputMethod);
}

}  // namespace

std::vector<std::string_view> shortcutConflicts(const ShortcutConfiguration& shortcut,
                                                const KeyboardFacts& facts) {
  std::vector<std::string_view> found;
  const auto modifiers = shortcut.modifierRawValue;
  switch (shortcut.kind) {
    case Kind::capsLock:
      if (facts.capsLockIsRemapped) found.push_back(remapped);
      break;
    case Kind::modifiersOnly:
      if (modifiers == control) found.push_back(controlAlone);
      if (modifiers == option) found.push_back(altAlone);
      if (modifiers == (control | shift) || modifiers == (option | shift)) found.push_back(layoutSwitch);
      break;
    case Kind::key:
      if (facts.isTaken) found.push_back(taken);
      addForKey(shortcut, found);
      break;
    case Kind::doubleTapModifier:
    case Kind::disabled:
      break;
  }
  return found;
}

std::vector<ShortcutConfiguration> proposedShortcuts(
    const std::function<bool(const ShortcutConfiguration&)>& canBeHeard) {
  constexpr std::size_t most = 2;
  std::vector<ShortcutConfiguration> proposals;
  for (const auto& shortcut :
       {ShortcutConfiguration{Kind::modifiersOnly, virtualKey::leftControl, control | command, ""},
        configuration(ShortcutChoice::doubleTapOption), configuration(ShortcutChoice::controlSpace),
        configuration(ShortcutChoice::commandShiftD)}) {
    if (proposals.size() < most && (!canBeHeard || canBeHeard(shortcut))) proposals.push_back(shortcut);
  }
  return proposals;
}

bool isSameShortcut(const ShortcutConfiguration& one, const ShortcutConfiguration& other) {
  if (one.kind != Kind::modifiersOnly) return one == other;
  return other.kind == Kind::modifiersOnly && one.modifierRawValue == other.modifierRawValue;
}

}  // namespace murmel
