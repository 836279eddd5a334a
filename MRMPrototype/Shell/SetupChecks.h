#pragma once

#include "Interface/SetupWindow.h"
#include "Models/SpeechModelStore.h"
#include "Shell/Installation.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <string>
#include <vector>

namespace murmel {

/// Looks at everything that dictation needs: the speech model and worker, the microphone, the global
/// shortcut, the paste, the key ring and the session bus. Takes up to a second where something hangs.
std::vector<SetupCheck> setupChecks(const Installation& installation, const SpeechModelStore& models,
                                    const ShortcutConfiguration& shortcut);

/// Why this desktop may not hear the shortcut, in words for the user; empty when it does, and for the
/// disabled one. Connects to the display for a moment.
std::string shortcutNotice(const ShortcutConfiguration& shortcut, const Environment& environment);

}  // namespace murmel
