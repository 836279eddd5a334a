#pragma once

#include "Shortcut/ShortcutConfiguration.h"

#include <QString>
#include <string_view>

namespace murmel {

/// A text of the core as this platform says it. For everything that is shown but texts about shortcuts.
QString inPlatformWords(std::string_view text);

/// A text about shortcuts, with the keys by the names that stand on keyboards here: Alt for Option, Super for
/// Command, Ctrl for Control, and for their symbols.
QString shortcutWords(std::string_view text);

/// The shortcut's title by those names: "Ctrl+Shift+D".
QString shortcutTitle(const ShortcutConfiguration& shortcut);

}  // namespace murmel
