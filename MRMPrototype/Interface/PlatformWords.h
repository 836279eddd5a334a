#pragma once

#include "Shortcut/ShortcutConfiguration.h"

#include <QString>
#include <functional>
#include <string_view>

namespace murmel {

/// A text of the core as it stands on the screen: in the words of this desktop, in the user's language. One
/// that the table of screen texts does not have stays as it is. `pasteKeys`: the keys that paste where the
/// text is about to go, "Ctrl+V" when empty.
QString inPlatformWords(std::string_view text, const QString& pasteKeys = {});

/// The shortcut by the names that stand on keyboards here: "Ctrl+Shift+D".
QString shortcutTitle(const ShortcutConfiguration& shortcut);

/// How the shortcut is used here. `tellsOfRelease` as the services have it; empty: the desktop does.
QString shortcutUse(const ShortcutConfiguration& shortcut,
                    const std::function<bool(const ShortcutConfiguration&)>& tellsOfRelease);

}  // namespace murmel
