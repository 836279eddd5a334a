#pragma once

#include "Interface/SetupWindow.h"
#include "Models/SpeechModelStore.h"
#include "Shell/ApplicationFolders.h"

#include <vector>

namespace murmel {

/// Looks at everything that dictation needs: the speech model and worker, the microphone, the global
/// shortcut, the paste, the key ring and the session bus. Takes up to a second where something hangs.
std::vector<SetupCheck> setupChecks(const ApplicationFolders& folders, const SpeechModelStore& models);

}  // namespace murmel
