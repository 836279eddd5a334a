#pragma once

#include "Shortcut/ShortcutConfiguration.h"

#include <string_view>

namespace murmel {

/// How the shortcut is used, as the settings say it under the choice.
std::string_view modeHelpText(ShortcutConfiguration::Kind kind);

/// Why the settings ask for the keyboard permission.
inline constexpr std::string_view inputMonitoringExplanation =
    "Input Monitoring lets your configured shortcut work while other apps are active.";

}  // namespace murmel
