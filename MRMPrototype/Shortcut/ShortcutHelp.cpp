#include "Shortcut/ShortcutHelp.h"

namespace murmel {

std::string_view modeHelpText(ShortcutConfiguration::Kind kind) {
  switch (kind) {
    case ShortcutConfiguration::Kind::key:
    case ShortcutConfiguration::Kind::modifiersOnly:
      return "Hold the shortcut while speaking, then release it.";
    case ShortcutConfiguration::Kind::capsLock:
      return "Press Caps Lock once to start and again to stop. Its normal Caps Lock state changes too.";
    case ShortcutConfiguration::Kind::doubleTapModifier:
      return "Tap Option twice to start, then twice again to stop.";
    case ShortcutConfiguration::Kind::disabled:
      break;
  }
  return "Use the menu bar or floating recording control to start dictation.";
}

}  // namespace murmel
